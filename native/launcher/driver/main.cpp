// The process: descriptors, signals and the outermost handler around the launcher.

#include <cstdlib>

#include "launcher/driver/EntryPoint.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/ProcessSetup.h"

namespace __gnu_cxx {  // NOLINT(bugprone-reserved-identifier): the C++ library's own name

/// Takes the place of the library's function, which names the exception that nobody caught and
/// brings 50 KB of code to do so. main catches them all.
void __verbose_terminate_handler() {  // NOLINT(bugprone-reserved-identifier)
  std::abort();
}

}  // namespace __gnu_cxx

int main(int argumentCount, char** arguments) {
  vessant::prepareProcess();
  vessant::LauncherState state;
  const vessant::CancelSignals signals(state.cancelFlag);
  try {
    return vessant::runLauncher(argumentCount, arguments, state);
  } catch (...) {
    return vessant::reportUnexpectedFailure(state);
  }
}
