// The layout of a launcher file, an executable with files behind it, one entry of its index, and
// its mode byte.
//
//     the executable
//     the bytes of the appended files
//     the file index                         at the index offset
//     the mode byte                          1 byte
//     the trailer: index offset, 4 bytes; identification value, 4 bytes
//
// The index is a file count (4 bytes) and that many entries:
//
//     type 1, id 4, length 4, offset 4, name length 2, name,
//     size-information flag 1, and when that is 1: expanded file count 4, expanded size 4
//
// All numbers are big-endian on every machine.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

#include "launcher/base/Deque.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// What an appended file is.
enum class FileType : std::int32_t {
  Instructions = 0,
  JvmFile = 1,
  LaunchScript = 2,
  ClassPathArchive = 3,
  JvmInstaller = 4,
  VerificationClass = 5,
  ApplicationArchive = 6,
  EmbeddedLauncher = 7,
};

inline constexpr int kLastFileType = 7;
/// The last four bytes of a launcher file that carries files.
inline constexpr std::uint32_t kIdentification = 0xCA82CA82;
/// Bytes from the start of the trailer to the end of the file.
inline constexpr int kTrailerSize = 8;
/// Bytes from the mode byte to the end of the file.
inline constexpr int kModeByteDistance = kTrailerSize + 1;
/// The value of the size-information flag that announces two more fields.
inline constexpr int kHasSizeInformation = 1;

/// One file carried in a launcher file.
struct FileIndexEntry {
  FileType type = FileType::Instructions;
  /// What the entry's bytes say, for the types that are tag files, once they are read. The objects
  /// made from it refer to it.
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

/// Reads one entry at the stream's position; whatever `entry` held is replaced. Throws
/// LauncherException at the first bad field; the entry then holds the fields in front of it.
void readFileIndexEntry(FileIndexEntry& entry, std::FILE* stream);

/// No mode byte: not read yet, or the file cannot be read.
inline constexpr std::int32_t kNoModeByte = -1;

/// Answers the mode byte of files and remembers that of the launcher itself.
class ModeByteProbe {
 public:
  /// Both are the caller's; `lastTrailerByte` is where the launcher's own mode byte is kept.
  ModeByteProbe(const SString& launcherFileName, std::int32_t& lastTrailerByte)
      : launcherFileName_(launcherFileName), lastTrailerByte_(lastTrailerByte) {}

  /// The byte 9 bytes before the end of the file, 0..255, or kNoModeByte.
  std::int32_t launcherModeByte(const SString& fileName);
  /// The mode byte of the launcher itself.
  std::int32_t ownModeByte() { return launcherModeByte(launcherFileName_); }

 private:
  const SString& launcherFileName_;
  std::int32_t& lastTrailerByte_;
};

/// Modes in which the program is an installer's wizard: it gets the JVM file's extra environment
/// variables, and its exit status 232 is no failure to tell the user about.
[[nodiscard]] constexpr bool isWizardMode(std::int32_t modeByte) {
  return modeByte == 0 || modeByte == 2;
}

}  // namespace vessant
