#include "packer/LauncherInfo.h"

#include <algorithm>
#include <cstring>

#include <elf.h>

namespace vessant {
namespace {

constexpr std::string_view kOwner("Vessant", 8);  // with its NUL
constexpr std::size_t kMostSegments = 64;
constexpr std::size_t kMostNoteBytes = 1U << 16U;

/// The bytes as a record, when there are enough.
template <class Record>
bool readRecord(std::string_view bytes, std::size_t position, Record& record) {
  if (position > bytes.size() || bytes.size() - position < sizeof(Record)) return false;
  std::memcpy(&record, bytes.data() + position, sizeof(Record));
  return true;
}

std::size_t padded(std::size_t length) {
  constexpr std::size_t kPad = 4;
  return (length + kPad - 1) / kPad * kPad;
}

/// The description of the owner's first note.
std::string noteIn(std::string_view notes) {
  Elf64_Nhdr note = {};
  for (std::size_t at = 0; readRecord(notes, at, note);) {
    const std::size_t name = at + sizeof(note);
    const std::size_t description = name + padded(note.n_namesz);
    if (description > notes.size() || note.n_descsz > notes.size() - description) break;
    if (notes.substr(name, note.n_namesz) == kOwner) {
      const std::string_view text = notes.substr(description, note.n_descsz);
      return std::string(text.substr(0, text.find('\0')));
    }
    at = description + padded(note.n_descsz);
  }
  return "";
}

/// For programs of this machine's byte order, 32 or 64 bits wide.
template <class Header, class Segment>
std::string versionIn(const ByteSource& program) {
  Header header = {};
  if (!readRecord(program.bytesAt(0, sizeof(Header)), 0, header)) return "";
  const std::size_t count = std::min<std::size_t>(header.e_phnum, kMostSegments);
  const std::string table = program.bytesAt(header.e_phoff, count * sizeof(Segment));
  Segment segment = {};
  for (std::size_t i = 0; readRecord(table, i * sizeof(Segment), segment); ++i) {
    if (segment.p_type != PT_NOTE) continue;
    const std::size_t length = std::min<std::uint64_t>(segment.p_filesz, kMostNoteBytes);
    const std::string version = noteIn(program.bytesAt(segment.p_offset, length));
    if (!version.empty()) return version;
  }
  return "";
}

}  // namespace

std::string launcherVersionOf(const ByteSource& program) {
  const std::string ident = program.bytesAt(0, EI_NIDENT);
  if (ident.size() < EI_NIDENT || !ident.starts_with(ELFMAG)) return "";
  if (ident[EI_DATA] != ELFDATA2LSB) return "";
  return ident[EI_CLASS] == ELFCLASS32 ? versionIn<Elf32_Ehdr, Elf32_Phdr>(program)
                                       : versionIn<Elf64_Ehdr, Elf64_Phdr>(program);
}

}  // namespace vessant
