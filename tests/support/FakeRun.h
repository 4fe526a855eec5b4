// A run for unit tests: every service that the rooms ask for, recording what it is told.
#pragma once

#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "launcher/base/RunServices.h"
#include "launcher/driver/output/Messages.h"

namespace vessant {

/// Lets test failures show texts.
void PrintTo(const SString& text, std::ostream* out);

}  // namespace vessant

namespace vessant::test {

[[nodiscard]] std::string str(const SString& text);

class RecordingLog : public LogSink {
 public:
  struct Line {
    std::string text;
    LogLevel level;
    bool operator==(const Line&) const = default;
  };

  void log(const SString& text, LogLevel level) override;

  [[nodiscard]] const std::vector<Line>& lines() const { return lines_; }
  [[nodiscard]] bool contains(const std::string& text) const;
  [[nodiscard]] bool contains(const std::string& text, LogLevel level) const;
  /// The texts alone, in order.
  [[nodiscard]] std::vector<std::string> texts() const;
  void clear() { lines_.clear(); }

 private:
  std::vector<Line> lines_;
};

class RecordingProgress : public ProgressSink {
 public:
  void addProgressDots(std::int32_t count) override { steps += count; }
  void showSearchPhase(SearchPhase phase, const SString& text) override;

  std::int32_t steps = 0;
  std::vector<std::pair<SearchPhase, std::string>> phases;
};

/// Runs nothing: answers with the next of `results`, or 0, and writes the matching output. A test
/// may set `onExecute` to do something while the command "runs".
class FakePlatform : public Platform {
 public:
  ChildResult executeCommand(const ChildCommand& command, ProgressSink& progress) override;
  [[nodiscard]] SString getEnvironmentVariable(const SString& name) const override;
  void setEnvironmentVariable(const SString& name, const SString& value) override;
  [[nodiscard]] bool hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                  std::uint32_t fileCount) const override;
  [[nodiscard]] bool isNoExec(const SString& /*path*/) const override { return noExec; }

  struct SpaceQuestion {
    std::string directory;
    std::uint32_t bytes;
    std::uint32_t files;
    bool operator==(const SpaceQuestion&) const = default;
  };

  std::map<std::string, std::string> environment;
  std::vector<std::int32_t> results;
  /// How every command ends.
  ChildEnd end = ChildEnd::Exited;
  std::string output;
  std::string errors;
  bool enoughSpace = true;
  bool noExec = false;
  void (*onExecute)(FakePlatform&) = nullptr;
  /// Runs the commands in its place, when set.
  std::function<ChildResult(const ChildCommand&, ProgressSink&)> executor;

  std::vector<ChildCommand> commands;  // as given; their text pointers may no longer be good
  std::vector<std::pair<std::string, std::string>> settings;  // every setEnvironmentVariable
  mutable std::vector<SpaceQuestion> spaceQuestions;
};

struct FakeRun {
  RecordingLog log;
  RecordingProgress progress;
  FakePlatform platform;
  Messages messages{platform};  // English, as long as the environment has no LANG
  CancelFlag cancelFlag;
  RunServices services{log, progress, messages, cancelFlag, platform};
};

}  // namespace vessant::test
