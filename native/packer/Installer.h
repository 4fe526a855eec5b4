// An installer of whatever origin: looked into, never run, and never believed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "launcher/archive/LauncherFormat.h"
#include "packer/ByteSource.h"

namespace vessant {

/// What keeps an index from being read on.
struct IndexFlaw {
  /// The name of the finding.
  const char* name;
  std::string text;
};

class Installer {
 public:
  /// Larger indexes are refused: they would fill the memory, and no author means them.
  static constexpr std::uint32_t kMostFiles = 100000;
  static constexpr std::uint64_t kLargestIndex = 1U << 24U;

  /// Opens the file and reads its index as the launcher does, up to the first flaw. Throws
  /// LauncherException, naming the path, only when the file itself cannot be opened or read.
  explicit Installer(const std::string& path);

  [[nodiscard]] const std::string& path() const { return file_.label(); }
  [[nodiscard]] std::uint64_t size() const { return file_.length(); }
  /// Whether the file ends as an installer does. Without this nothing below is known.
  [[nodiscard]] bool isInstaller() const { return isInstaller_; }
  /// What ended the reading of the index; `entries` holds what came before it.
  [[nodiscard]] const std::optional<IndexFlaw>& flaw() const { return flaw_; }
  /// Throws LauncherException for no installer and for a flaw.
  void requireIndex() const;

  [[nodiscard]] std::uint8_t modeByte() const { return modeByte_; }
  [[nodiscard]] std::uint32_t indexOffset() const { return indexOffset_; }
  /// The first byte behind the index's last entry.
  [[nodiscard]] std::uint64_t indexEnd() const { return indexEnd_; }
  [[nodiscard]] const std::vector<FileIndexEntry>& entries() const { return entries_; }
  /// The entry of this name, else this id when `name` is a number, or null.
  [[nodiscard]] const FileIndexEntry* find(const std::string& name) const;
  /// The same for a name that a user gave. Throws LauncherException, with the nearest name, when
  /// there is none.
  [[nodiscard]] const FileIndexEntry& require(const std::string& name) const;

  /// The launcher in front: the bytes before the first packed file.
  [[nodiscard]] ByteSource launcher() const;
  /// Whether the entry's bytes lie within the file, in front of the index or not.
  [[nodiscard]] bool isWithin(const FileIndexEntry& entry) const;
  /// The entry's bytes. Throws LauncherException when they lie beyond the end.
  [[nodiscard]] ByteSource bytesOf(const FileIndexEntry& entry) const;
  /// The same as one text, for the kinds that are texts.
  [[nodiscard]] std::string textOf(const FileIndexEntry& entry) const;
  /// Reads a text into `tags` with the launcher's own reader, as far as the entry goes. Throws
  /// LauncherException at the first syntax error.
  void loadTags(const FileIndexEntry& entry, TagFile& tags) const;
  /// The whole file.
  [[nodiscard]] const ByteSource& bytes() const { return file_; }

 private:
  void readTrailer();
  void readIndex();
  void readEntries(std::FILE* stream, std::uint32_t count);

  ByteSource file_;
  bool isInstaller_ = false;
  std::optional<IndexFlaw> flaw_;
  std::uint8_t modeByte_ = 0;
  std::uint32_t indexOffset_ = 0;
  std::uint64_t indexEnd_ = 0;
  std::vector<FileIndexEntry> entries_;
};

}  // namespace vessant
