#include "support/FakeRun.h"

#include <algorithm>

namespace vessant {

void PrintTo(const SString& text, std::ostream* out) {
  *out << '"' << text.view() << '"';
}

}  // namespace vessant

namespace vessant::test {

std::string str(const SString& text) {
  return std::string(text.view());
}

void RecordingLog::log(const SString& text, LogLevel level) {
  lines_.push_back({str(text), level});
}

bool RecordingLog::contains(const std::string& text) const {
  return std::any_of(lines_.begin(), lines_.end(),
                     [&](const Line& line) { return line.text == text; });
}

bool RecordingLog::contains(const std::string& text, LogLevel level) const {
  return std::find(lines_.begin(), lines_.end(), Line{text, level}) != lines_.end();
}

std::vector<std::string> RecordingLog::texts() const {
  std::vector<std::string> texts;
  for (const Line& line : lines_) texts.push_back(line.text);
  return texts;
}

void RecordingProgress::showSearchPhase(SearchPhase phase, const SString& text) {
  phases.emplace_back(phase, str(text));
}

ChildResult FakePlatform::executeCommand(const ChildCommand& command, ProgressSink& progress) {
  commands.push_back(command);
  if (onExecute != nullptr) onExecute(*this);
  if (executor) return executor(command, progress);
  if (command.captureOutput && command.stdoutText != nullptr) command.stdoutText->append(output);
  if (command.captureOutput && command.stderrText != nullptr) command.stderrText->append(errors);
  if (results.empty()) return {0, end};
  const std::int32_t result = results.front();
  results.erase(results.begin());
  return {result, end};
}

SString FakePlatform::getEnvironmentVariable(const SString& name) const {
  const auto found = environment.find(str(name));
  return found == environment.end() ? SString() : SString(std::string_view(found->second));
}

void FakePlatform::setEnvironmentVariable(const SString& name, const SString& value) {
  settings.emplace_back(str(name), str(value));
  environment[str(name)] = str(value);
}

bool FakePlatform::hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                std::uint32_t fileCount) const {
  spaceQuestions.push_back({str(directory), byteCount, fileCount});
  return enoughSpace;
}

}  // namespace vessant::test
