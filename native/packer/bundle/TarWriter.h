// Writes a tar archive that depends on nothing but what is put into it.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "packer/bundle/RuntimeTree.h"

struct archive;

namespace vessant {

/// In GNU's format, which every tar of Linux reads, however long the names are. All entries belong
/// to root and have one fixed time; permissions are 0755 or 0644.
class TarWriter {
 public:
  using Sink = std::function<void(std::string_view bytes)>;

  /// The archive's bytes go to `sink`, which must outlive this; they are compressed with gzip when
  /// `compress` is set. What the sink throws leaves through the operation that wrote.
  TarWriter(Sink sink, bool compress);
  TarWriter(const TarWriter&) = delete;
  TarWriter& operator=(const TarWriter&) = delete;
  ~TarWriter();

  /// Adds an entry under `name`, a file with the bytes of its source. Throws LauncherException,
  /// naming the source, when it cannot be read or has changed its size.
  void add(const RuntimeEntry& entry, const std::string& name);
  /// Adds a file with these bytes.
  void addText(const std::string& name, std::string_view text);
  /// Writes what still has to be written.
  void finish();

 private:
  static long writeToSink(archive* tar, void* self, const void* buffer, std::size_t count);

  void addHeader(const RuntimeEntry& entry, const std::string& name);
  void addBytes(const RuntimeEntry& entry);
  void write(std::string_view bytes);
  void check(int result);

  Sink sink_;
  std::exception_ptr sinkFailure_;
  bool givenUp_ = false;
  std::unique_ptr<archive, int (*)(archive*)> tar_;
};

}  // namespace vessant
