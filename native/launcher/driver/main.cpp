// The process: locale, signals and the outermost handler around the launcher.

#include <clocale>

#include "launcher/driver/EntryPoint.h"
#include "launcher/driver/LauncherState.h"
#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/ProcessSetup.h"

int main(int argumentCount, char** arguments) {
  vessant::prepareProcess();
  std::setlocale(LC_CTYPE, "");
  vessant::LauncherState state;
  const vessant::CancelSignals signals(state.cancelFlag);
  try {
    return vessant::runLauncher(argumentCount, arguments, state);
  } catch (...) {
    return vessant::reportUnexpectedFailure(state);
  }
}
