// The process: descriptors, signals and the outermost handler around the launcher; and the version,
// where other programs can read it without running the launcher.

#include <cstdint>
#include <cstdlib>

#include "launcher/driver/LauncherMain.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/ChildProcess.h"

namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier): the C++ library's own name

/// Takes the place of the library's function, which names the exception that nobody caught and
/// brings 50 KB of code to do so. main catches them all.
void __verbose_terminate_handler() {  // NOLINT(bugprone-reserved-identifier)
  std::abort();
}

}  // namespace __gnu_cxx

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

/// An ELF note, which `vspack info` reads. Nothing in the program refers to it.
[[gnu::section(".note.vessant"), gnu::used]] alignas(4) const Note versionNote = {
    8, sizeof(Note::description), 1, "Vessant", VESSANT_VERSION};

}  // namespace
}  // namespace vessant

int main(int argumentCount, char** arguments) {
  vessant::prepareProcess();
  vessant::LauncherState state;
  const vessant::CancelSignals signals(state.cancelFlag,
                                       vessant::CancelSignals::Afterwards::ProcessEnds);
  try {
    return vessant::runLauncher(argumentCount, arguments, state);
  } catch (...) {
    return vessant::reportUnexpectedFailure(state);
  }
}
