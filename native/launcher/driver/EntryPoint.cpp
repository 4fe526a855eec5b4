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

bool isFailure(std::int32_t result, std::int32_t modeByte) {
  if (result == kWizardLeft && isWizardMode(modeByte)) return false;
  return result != 0;
}

}  // namespace

int runLauncher(int argumentCount, const char* const* arguments, LauncherState& state) {
  StringDeque list;
  for (int i = 1; i < argumentCount; ++i) list.add(arguments[i]);
  const SString launcherFileName = absolutePath(argumentCount > 0 ? arguments[0] : "");
  LauncherMain launcher(state);
  const std::int32_t result = launcher.run(list, launcherFileName);
  const std::int32_t modeByte = launcher.modeByte();
  if (isFailure(result, modeByte) && !state.launchFailureMessage.isEmpty()) {
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
