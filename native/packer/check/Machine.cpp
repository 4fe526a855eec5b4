#include "packer/check/Machine.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include <elf.h>

#include "packer/ArchiveReader.h"
#include "packer/bundle/InstallerHead.h"

namespace vessant {
namespace {

/// The first bytes of an ELF file, up to the machine.
constexpr std::size_t kMachineEnd = 20;
constexpr std::uint64_t kLargestLauncher = 1U << 26U;
/// How much of a tar file is unpacked to find a program in it.
constexpr std::uint64_t kMostUnpacked = 1U << 21U;

struct Machine {
  std::uint16_t number;
  const char* name;
};

constexpr Machine kMachines[] = {
    {EM_386, "x86"},   {EM_X86_64, "x86-64"}, {EM_ARM, "arm"},    {EM_AARCH64, "aarch64"},
    {EM_PPC, "ppc"},   {EM_PPC64, "ppc64"},   {EM_S390, "s390x"}, {EM_RISCV, "riscv"},
    {EM_MIPS, "mips"}, {EM_SPARCV9, "sparc"},
};

constexpr char kOwnerName[] = "Vessant";
constexpr std::string_view kOwner(kOwnerName, sizeof(kOwnerName));  // with its NUL
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
    std::string version = noteIn(program.bytesAt(segment.p_offset, length));
    if (!version.empty()) return version;
  }
  return "";
}

}  // namespace

std::string machineOf(std::string_view bytes) {
  if (bytes.size() < kMachineEnd || !bytes.starts_with(ELFMAG)) return "";
  const bool isBig = bytes[EI_DATA] == ELFDATA2MSB;
  const auto high = static_cast<unsigned char>(bytes[isBig ? 18 : 19]);
  const auto low = static_cast<unsigned char>(bytes[isBig ? 19 : 18]);
  const auto number = static_cast<std::uint16_t>(high << 8U | low);
  for (const Machine& machine : kMachines) {
    if (machine.number == number) return machine.name;
  }
  return "machine " + std::to_string(number);
}

std::string machineOfRuntime(const ByteSource& installer) {
  std::string own = machineOf(installer.bytesAt(0, kMachineEnd));
  if (!own.empty()) return own;
  const std::optional<ArchivePlace> place = findArchive(installer);
  if (!place || place->format != ArchiveFormat::Tar) return "";
  const std::uint64_t length = installer.length() - place->offset;
  ArchiveReader reader(installer.part(place->offset, length, installer.label()), place->format);
  std::uint64_t unpacked = 0;
  while (const std::optional<ArchiveMember> member = reader.next()) {
    std::string machine = member->isRegular ? machineOf(reader.contents(kMachineEnd)) : "";
    if (!machine.empty()) return machine;
    unpacked += place->isCompressed ? member->size : 0;
    if (unpacked > kMostUnpacked) break;
  }
  return "";
}

std::string jvmFileOfRuntime(const ByteSource& installer) {
  constexpr std::size_t kMostText = 1U << 16U;
  const std::optional<ArchivePlace> place = findArchive(installer);
  if (!place || place->format != ArchiveFormat::Tar) return "";
  const std::uint64_t length = installer.length() - place->offset;
  ArchiveReader reader(installer.part(place->offset, length, installer.label()), place->format);
  while (const std::optional<ArchiveMember> member = reader.next()) {
    if (member->name == kUnprovenJvmFile) return reader.contents(kMostText);
  }
  return "";
}

bool isLauncher(const ByteSource& program) {
  if (program.length() > kLargestLauncher) return false;
  const std::string bytes = program.text(kLargestLauncher);
  const auto holds = [&bytes](const char* option) {
    return bytes.find(option) != std::string::npos;
  };
  return !machineOf(bytes).empty() && holds("-vs:extract") && holds("-vs:javahome");
}

std::string launcherVersionOf(const ByteSource& program) {
  const std::string ident = program.bytesAt(0, EI_NIDENT);
  if (ident.size() < EI_NIDENT || !ident.starts_with(ELFMAG)) return "";
  if (ident[EI_DATA] != ELFDATA2LSB) return "";
  return ident[EI_CLASS] == ELFCLASS32 ? versionIn<Elf32_Ehdr, Elf32_Phdr>(program)
                                       : versionIn<Elf64_Ehdr, Elf64_Phdr>(program);
}

}  // namespace vessant
