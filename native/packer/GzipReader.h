// Unpacks gzip by zlib, which holds the bytes against the checksum behind them; libarchive passes
// that over.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct z_stream_s;

namespace vessant {

class GzipReader {
 public:
  /// Gives the next packed bytes, good until the next call; none at the end.
  using Source = std::function<std::string_view()>;

  explicit GzipReader(Source source);
  GzipReader(const GzipReader&) = delete;
  GzipReader& operator=(const GzipReader&) = delete;
  ~GzipReader();

  /// The next unpacked bytes, at most 128 KiB and good until the next call; none at the end. Files
  /// that follow each other are one, and what is no gzip behind them is passed over, as gzip does.
  /// Throws LauncherException for what is damaged or ends early, and what the source throws.
  [[nodiscard]] std::string_view next();

 private:
  struct Closer {
    void operator()(z_stream_s* stream) const;
  };

  [[nodiscard]] bool hasInput();
  void inflateSome();

  Source source_;
  std::unique_ptr<z_stream_s, Closer> stream_;
  std::string unpacked_;
  /// Whether the checksum of what was read so far has been seen.
  bool isWhole_ = false;
};

}  // namespace vessant
