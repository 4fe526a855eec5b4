// gzip is unpacked, and held against the checksum and the length behind it.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <zlib.h>

#include "packer/GzipReader.h"
#include "packer/Text.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;

std::string packed(std::string text) {
  constexpr int kGzipWindow = 16 + MAX_WBITS;
  constexpr int kMemory = 8;
  z_stream stream = {};
  EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, kGzipWindow, kMemory, Z_DEFAULT_STRATEGY), Z_OK);
  std::string bytes(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(text.data());
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
  stream.avail_out = static_cast<uInt>(bytes.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  bytes.resize(stream.total_out);
  deflateEnd(&stream);
  return bytes;
}

/// What the reader makes of the bytes, given in pieces of `step`; or the error.
std::string unpacked(std::string_view bytes, std::size_t step = 1000) {
  GzipReader reader([&bytes, step] {
    const std::string_view piece = bytes.substr(0, step);
    bytes.remove_prefix(piece.size());
    return piece;
  });
  std::string text;
  try {
    for (std::string_view piece; !(piece = reader.next()).empty();) text += piece;
  } catch (const LauncherException& error) {
    return "error: " + str(error.message());
  }
  return text;
}

std::string numbers() {
  std::string text;
  for (int i = 0; i < 100000; ++i) text += std::to_string(i * 7919);
  return text;
}

TEST(GzipReader, UnpacksInWhateverPiecesItGets) {
  const std::string text = numbers();
  const std::string bytes = packed(text);
  for (const std::size_t step : {1U, 7U, 4096U, 10'000'000U})
    EXPECT_EQ(unpacked(bytes, step), text);
  EXPECT_EQ(unpacked(packed("")), "");
}

TEST(GzipReader, TakesFilesInARowForOneAndPassesOverWhatIsBehind) {
  EXPECT_EQ(unpacked(packed("one ") + packed("two")), "one two");
  EXPECT_EQ(unpacked(packed("one") + std::string(512, '\0')), "one");
}

TEST(GzipReader, TellsAWrongChecksumOrLength) {
  for (const std::size_t fromEnd : {1U, 4U, 5U, 8U}) {
    std::string bytes = packed("text");
    bytes[bytes.size() - fromEnd] ^= 1;
    EXPECT_THAT(unpacked(bytes), HasSubstr("error: gzip: incorrect ")) << fromEnd;
  }
}

TEST(GzipReader, TellsWhereverItIsCut) {
  const std::string bytes = packed("a text of no great length");
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    EXPECT_EQ(unpacked(bytes.substr(0, length)), "error: truncated gzip input") << length;
  }
}

}  // namespace
}  // namespace vessant::test
