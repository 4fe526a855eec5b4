// The launcher's version, where other programs can read it without running the launcher: an ELF
// note. `vspack info` does.

#include <cstdint>

namespace vessant {
namespace {

constexpr char kVersion[] = VESSANT_VERSION;

/// The layout of a note (ELF specification): the three lengths and then both texts, each padded to
/// 4 bytes.
struct Note {
  std::uint32_t nameSize;
  std::uint32_t descriptionSize;
  std::uint32_t type;
  char name[8];
  char description[8];
};

static_assert(sizeof(kVersion) <= sizeof(Note::description),
              "the note has no room for the version");

// Nothing in the program refers to it.
[[gnu::section(".note.vessant"), gnu::used]] alignas(4) const Note versionNote = {
    8, sizeof(Note::description), 1, "Vessant", VESSANT_VERSION};

}  // namespace
}  // namespace vessant
