#include "launcher/tagfile/InputFile.h"

namespace vessant {
namespace {

struct ActionName {
  const char* name;
  InputAction action;
};

constexpr ActionName kActions[] = {
    {kRunInstructionsAction, InputAction::RunInstructions},
    {"SEARCH", InputAction::Search},
    {"SEARCH_ALL", InputAction::SearchAll},
    {"VERIFY_JVM", InputAction::VerifyJvm},
    {"INSTALL_JVM", InputAction::InstallJvm},
};

}  // namespace

InputAction InputFile::action() const {
  const SString written = text(inputkey::kAction);
  for (const ActionName& known : kActions) {
    if (written == known.name) return known.action;
  }
  return InputAction::Unknown;
}

}  // namespace vessant
