#include "InstructionsFixture.h"

#include "launcher/base/Exceptions.h"

namespace vessant::test {

void RecordingActions::throwIfCanceled() const {
  if (canceled) throw LauncherException("Canceled by the user.");
}

void RecordingActions::findJvm(Display display) {
  record("findJvm", {std::to_string(display.progress), std::to_string(display.failure)});
}

std::int32_t RecordingActions::launchWithEmbeddedJvmFile(std::int32_t fileId,
                                                         std::int16_t seconds) {
  record("launchWithEmbeddedJvmFile", {std::to_string(fileId), std::to_string(seconds)});
  return nextStatus();
}

void RecordingActions::beginProgress() {
  record("beginProgress", {});
}

void RecordingActions::installEmbeddedJvm(std::int32_t mode) {
  record("installEmbeddedJvm", {std::to_string(mode)});
}

std::int32_t RecordingActions::launchWithJvmFile(const SString& fileName, std::int16_t seconds) {
  record("launchWithJvmFile", {str(fileName), std::to_string(seconds)});
  return nextStatus();
}

void RecordingActions::verifyEmbeddedJvmFile(Display display, std::int32_t fileId) {
  record("verifyEmbeddedJvmFile", {std::to_string(display.progress),
                                   std::to_string(display.failure), std::to_string(fileId)});
}

void RecordingActions::runEmbeddedLauncher(std::int32_t fileId) {
  record("runEmbeddedLauncher", {std::to_string(fileId)});
}

SString RecordingActions::getStringVariable(std::int32_t number) const {
  return strings_.at(static_cast<std::size_t>(number - 1));
}

void RecordingActions::setStringVariable(std::int32_t number, const SString& value) {
  strings_.at(static_cast<std::size_t>(number - 1)) = value;
}

std::int32_t RecordingActions::getNumericVariable(std::int32_t number) const {
  return numbers_.at(static_cast<std::size_t>(number - 1));
}

void RecordingActions::setNumericVariable(std::int32_t number, std::int32_t value) {
  numbers_.at(static_cast<std::size_t>(number - 1)) = value;
}

void RecordingActions::record(std::string_view operation,
                              const std::vector<std::string>& arguments) {
  std::string list;
  for (const std::string& argument : arguments) list += ", " + argument;
  calls.push_back(std::string(operation) + "(" + (list.empty() ? list : list.substr(2)) + ")");
  if (during) during();
}

std::int32_t RecordingActions::nextStatus() {
  if (statuses.empty()) return 0;
  const std::int32_t status = statuses.front();
  statuses.erase(statuses.begin());
  return status;
}

void PrintTo(const ScriptError& error, std::ostream* out) {
  *out << '"' << error.message << "\" in line " << error.line;
}

ScriptError scriptError(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const InstructionsException& error) {
    return {str(error.message()), error.lineNumber()};
  } catch (const LauncherException& error) {
    return {str(error.message()), ScriptError::kNoLine};
  }
  ADD_FAILURE() << "nothing was thrown";
  return {"", -1};
}

std::int32_t InstructionsFixture::run(const Statements& statements) {
  TagFile tags;
  for (const std::string& statement : statements) {
    tags.addValue("INSTRUCTIONS", std::string_view(statement));
  }
  return runInstructions(tags, actions);
}

ScriptError InstructionsFixture::errorOf(const Statements& statements) {
  return scriptError([&] { run(statements); });
}

ScriptError InstructionsFixture::errorIn(const std::string& statement) {
  return errorOf({"// a comment", ":label", statement, "// never reached"});
}

std::string InstructionsFixture::stringVariable(std::int32_t number) const {
  return str(actions.getStringVariable(number));
}

}  // namespace vessant::test
