#include "launcher/driver/EntryPoint.h"

#include <unistd.h>

#include "launcher/archive/ModeByte.h"
#include "launcher/base/PathUtil.h"
#include "launcher/driver/LauncherMain.h"
#include "launcher/driver/output/StandardStreams.h"

namespace vessant {
namespace {

/// The exit status by which a wizard says that its user left it.
constexpr std::int32_t kWizardLeft = 232;

/// The mode byte stands in the launcher's own file, which is not read for any other status.
bool isFailure(std::int32_t result, LauncherMain& launcher) {
  if (result == kWizardLeft && isWizardMode(launcher.modeByte())) return false;
  return result != 0;
}

}  // namespace

int runLauncher(int argumentCount, const char* const* arguments, LauncherState& state) {
  StringDeque list;
  for (int i = 1; i < argumentCount; ++i) list.add(arguments[i]);
  const SString launcherFileName = absolutePath(argumentCount > 0 ? arguments[0] : "");
  LauncherMain launcher(state);
  const std::int32_t result = launcher.run(list, launcherFileName);
  // A cancelled run has been told of; what the program said of its end would look like its reason.
  const bool isToldOf = state.cancelFlag.isSet();
  if (isFailure(result, launcher) && !isToldOf && !state.launchFailureMessage.isEmpty()) {
    launcher.console().showMessage(state.launchFailureMessage);
  }
  return result;
}

int reportUnexpectedFailure(const LauncherState& state) {
  if (!state.console.silent) {
    OutputStream(STDOUT_FILENO, state.cancelFlag)
        .write("The launcher ended because of an unexpected internal failure.\n");
  }
  return kRunFailed;
}

}  // namespace vessant
