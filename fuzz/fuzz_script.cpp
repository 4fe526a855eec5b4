// An instruction script, a statement a line. A script may loop for ever by its own wish, so the run
// ends after some statements, variable reads and operations.

#include "FuzzInput.h"
#include "launcher/base/Exceptions.h"
#include "launcher/instructions/Interpreter.h"
#include "launcher/tagfile/TagFile.h"

namespace {

using vessant::SString;

struct OutOfSteps {};

class CountingActions : public vessant::InstructionActions {
 public:
  void throwIfCanceled() const override { step(); }
  void findJvm(vessant::Display) override { step(); }
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t, std::int16_t) override { return step(); }
  void beginProgress() override { step(); }
  void installEmbeddedJvm(std::int32_t) override { step(); }
  std::int32_t launchWithJvmFile(const SString&, std::int16_t) override { return step(); }
  void verifyEmbeddedJvmFile(vessant::Display, std::int32_t) override { step(); }
  void runEmbeddedLauncher(std::int32_t) override { step(); }
  SString getStringVariable(std::int32_t number) const override {
    step();
    return strings_[number - 1];
  }
  void setStringVariable(std::int32_t number, const SString& value) override {
    step();
    strings_[number - 1] = value;
  }
  std::int32_t getNumericVariable(std::int32_t number) const override {
    step();
    return numbers_[number - 1];
  }
  void setNumericVariable(std::int32_t number, std::int32_t value) override {
    step();
    numbers_[number - 1] = value;
  }

 private:
  int step() const {
    if (++steps_ > 200) throw OutOfSteps();
    return steps_;
  }

  SString strings_[kStringVariables];
  std::int32_t numbers_[kNumericVariables] = {};
  mutable int steps_ = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vessant::TagFile tags;
  const SString text = vessant::fuzz::textOf(data, size);
  SString::Size start = 0;
  while (start < text.length()) {
    const SString::Size newline = text.find('\n', start);
    const SString::Size end = newline == SString::npos ? text.length() : newline;
    const SString statement = text.substr(start, end - start);
    tags.addValue("INSTRUCTIONS", statement);
    start = end + 1;
  }
  CountingActions actions;
  try {
    vessant::runInstructions(tags, actions);
  } catch (const vessant::LauncherException&) {
  } catch (const vessant::InstructionsException&) {
  } catch (const OutOfSteps&) {
  }
  return 0;
}
