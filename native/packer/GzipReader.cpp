#include "packer/GzipReader.h"

#include <new>
#include <utility>

#include <zlib.h>

#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::size_t kBlockSize = 1U << 17U;
/// For zlib: with gzip's head and checksum.
constexpr int kGzipWindow = 16 + MAX_WBITS;
constexpr unsigned char kFirstByte = 0x1F;

}  // namespace

void GzipReader::Closer::operator()(z_stream_s* stream) const {
  inflateEnd(stream);
  delete stream;
}

GzipReader::GzipReader(Source source)
    : source_(std::move(source)), stream_(new z_stream_s()), unpacked_(kBlockSize, '\0') {
  if (inflateInit2(stream_.get(), kGzipWindow) != Z_OK) throw std::bad_alloc();
}

GzipReader::~GzipReader() = default;

std::string_view GzipReader::next() {
  stream_->next_out = reinterpret_cast<Bytef*>(unpacked_.data());
  stream_->avail_out = kBlockSize;
  while (stream_->avail_out == kBlockSize && hasInput()) inflateSome();
  return {unpacked_.data(), kBlockSize - stream_->avail_out};
}

bool GzipReader::hasInput() {
  if (stream_->avail_in == 0) {
    const std::string_view packed = source_();
    // zlib's interface is older than const; nothing is written through this pointer.
    stream_->next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    stream_->avail_in = static_cast<uInt>(packed.size());
  }
  if (stream_->avail_in == 0 && !isWhole_) throw failure("truncated gzip input");
  if (stream_->avail_in == 0) return false;
  if (!isWhole_) return true;
  if (*stream_->next_in != kFirstByte) return false;
  isWhole_ = false;
  return inflateReset(stream_.get()) == Z_OK;
}

void GzipReader::inflateSome() {
  const int result = inflate(stream_.get(), Z_NO_FLUSH);
  isWhole_ = result == Z_STREAM_END;
  if (isWhole_ || result == Z_OK || result == Z_BUF_ERROR) return;
  throw failure(std::string("gzip: ") + (stream_->msg == nullptr ? "is damaged" : stream_->msg));
}

}  // namespace vessant
