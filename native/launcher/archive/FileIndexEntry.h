// One file carried in a launcher file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

#include "launcher/archive/LauncherFormat.h"
#include "launcher/base/PtrDeque.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

struct FileIndexEntry {
  FileType type = FileType::Instructions;
  /// What the entry's bytes say, for the types that are tag files, once they are read.
  std::unique_ptr<TagFile> tagFile;
  /// The number that the packer gave the file; scripts name it by this.
  std::uint32_t fileId = 0;
  /// In bytes.
  std::uint32_t length = 0;
  /// Of the first byte, from the start of the launcher file.
  std::uint32_t offset = 0;
  SString fileName;
  bool hasSizeInformation = false;
  /// What unpacking the file will produce after its extraction; 0 without size information.
  std::uint32_t expandedFileCount = 0;
  std::uint32_t expandedSize = 0;
};

using FileIndexEntryPtrDE = PtrDE<FileIndexEntry>;
using FileIndexEntryPtrDeque = PtrDeque<FileIndexEntry>;

/// True for the types whose bytes are read in place as a tag file.
[[nodiscard]] bool isTagFileType(const FileIndexEntry& entry);

/// Reads one entry at the stream's position. Throws LauncherException at the first bad field.
void readFileIndexEntry(FileIndexEntry& entry, std::FILE* stream);

}  // namespace vessant
