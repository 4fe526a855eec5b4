#include "packer/check/StatementTrial.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/instructions/InstructionScript.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// Does nothing, successfully.
class NoActions : public InstructionActions {
 public:
  void findJvm(bool /*showProgress*/, bool /*showFailure*/) override {}
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t /*id*/, std::int16_t /*seconds*/) override {
    return 0;
  }
  void beginProgress() override {}
  void installEmbeddedJvm(std::int32_t /*mode*/) override {}
  std::int32_t launchWithJvmFile(const SString& /*name*/, std::int16_t /*seconds*/) override {
    return 0;
  }
  void verifyEmbeddedJvmFile(bool /*showProgress*/, bool /*showFailure*/,
                             std::int32_t /*id*/) override {}
  void runEmbeddedLauncher(std::int32_t /*id*/) override {}
  [[nodiscard]] SString getStringVariable(std::int32_t /*number*/) const override { return "1"; }
  void setStringVariable(std::int32_t /*number*/, const SString& /*value*/) override {}
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t /*number*/) const override {
    return 1;
  }
  void setNumericVariable(std::int32_t /*number*/, std::int32_t /*value*/) override {}
};

}  // namespace

std::string whyRefused(const Statement& statement) {
  // A jump goes to wherever its label is; that there is one is checked elsewhere.
  if (jumpTarget(statement)) return "";
  TagFile script;
  script.addValue("INSTRUCTIONS", sstr(statement.text));
  NoActions actions;
  try {
    static_cast<void>(runInstructions(InstructionScript(script), actions));
    return "";
  } catch (const InstructionsException& error) {
    return str(trimmed(error.message()));
  } catch (const LauncherException& error) {
    return str(trimmed(error.message()));
  }
}

}  // namespace vessant
