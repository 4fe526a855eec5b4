// A run of a launch script: the command that reaches the platform, and the log.

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class LaunchScriptRun : public LaunchRoom {
 protected:
  /// A script from tags, each a name and a value.
  std::unique_ptr<LaunchScript> scriptOf(
      const std::vector<std::pair<const char*, const char*>>& tags, bool captureOutput = true) {
    TagFile tagFile;
    for (const auto& [name, value] : tags) tagFile.setValue(name, value);
    return std::make_unique<LaunchScript>(tagFile, captureOutput, launch);
  }
  std::int32_t execute(LaunchScript& script, const Texts& passThrough = {},
                       bool javaConsole = false) {
    StringDeque arguments;
    for (const std::string& argument : passThrough) arguments.add(text(argument));
    return script.execute(jvmFile, &arguments, javaConsole);
  }
  const ChildCommand& child() { return run.platform.commands.back(); }

  const std::string directory = tree.path("app");
};

TEST_F(LaunchScriptRun, RunsTheCommandInTheLaunchersDirectory) {
  const auto script = scriptOf({{"COMMAND", "java Main"}});
  EXPECT_EQ(execute(*script), 0);
  ASSERT_EQ(run.platform.commands.size(), 1U);
  EXPECT_EQ(child().command, "java Main");
  EXPECT_EQ(child().workingDirectory, text(directory));
  EXPECT_FALSE(child().runInBackground);
  EXPECT_TRUE(child().captureOutput);
  EXPECT_TRUE(child().redirectChildOutput);
  EXPECT_FALSE(child().replaceProcess);
}

TEST_F(LaunchScriptRun, YieldsTheProgramsStatus) {
  run.platform.results = {42, -1};
  const auto script = scriptOf({{"COMMAND", "java"}});
  EXPECT_EQ(execute(*script), 42);
  EXPECT_EQ(execute(*script), -1);
}

TEST_F(LaunchScriptRun, RunsAnEmptyCommandWithoutTheTag) {
  const auto script = scriptOf({});
  execute(*script);
  EXPECT_EQ(child().command, "");
  EXPECT_EQ(script->description(), "");
}

TEST_F(LaunchScriptRun, HasADescription) {
  EXPECT_EQ(scriptOf({{"DESC", "My Product"}})->description(), "My Product");
}

TEST_F(LaunchScriptRun, StaysInTheCurrentDirectoryWhenToldTo) {
  const auto script = scriptOf({{"COMMAND", "java"}, {"AUTO_SET_WORKING_DIR", "0"}});
  execute(*script);
  EXPECT_EQ(child().workingDirectory, "");
  EXPECT_EQ(run.log.texts().front(),
            "Executing launch script command: java in current working directory");
}

TEST_F(LaunchScriptRun, ChangesTheDirectoryForAnyValueThatIsNotZero) {
  for (const char* value : {"1", "-1", "true", "no", ""}) {
    const auto script = scriptOf({{"AUTO_SET_WORKING_DIR", value}});
    execute(*script);
    EXPECT_EQ(child().workingDirectory, text(directory)) << value;
  }
}

TEST_F(LaunchScriptRun, CutsTheRunningLaunchersPathAtTheLastSlash) {
  const std::pair<const char*, const char*> rows[] = {
      {"/opt/my app/setup.bin", "/opt/my app"},
      {"/opt/a\\b\\setup", "/opt"},
      {"/setup", ""},
      {"setup.bin", "setup.bin"},
      {"a\\setup", "a\\setup"},
  };
  originalLauncherFileName = "/original/setup.bin";
  const auto script = scriptOf({{"COMMAND", "java"}});
  for (const auto& [launcher, cut] : rows) {
    launcherFileName = launcher;
    run.log.clear();
    execute(*script);
    EXPECT_EQ(child().workingDirectory, cut);
    EXPECT_EQ(run.log.texts().front(),
              std::string("Executing launch script command: java in working directory ") + cut);
  }
}

TEST_F(LaunchScriptRun, PutsPassThroughArgumentsInQuotes) {
  const auto script = scriptOf({{"COMMAND", "java Main"}});
  execute(*script, {"plain", "two words", "", "a\"b", "\"\"", "back\\slash\\", "%CP% @A@ #B# $C"});
  EXPECT_EQ(child().command,
            "java Main \"plain\" \"two words\" \"\" \"a\\\"b\" \"\\\"\\\"\" \"back\\slash\\\" "
            "\"%CP% @A@ #B# $C\"");
}

TEST_F(LaunchScriptRun, NeedsNoPassThroughArguments) {
  const auto script = scriptOf({{"COMMAND", "java Main"}});
  script->execute(jvmFile, nullptr, false);
  EXPECT_EQ(child().command, "java Main");
}

TEST_F(LaunchScriptRun, LogsTheCommandAndThenTheOutput) {
  run.platform.output = "hello\n";
  run.platform.errors = "oh\n";
  const auto script = scriptOf({{"COMMAND", "java"}});
  execute(*script, {"x y"});
  std::vector<Line> expected;
  for (const std::string& line :
       {"Executing launch script command: java \"x y\" in working directory " + directory,
        std::string("Output from the launch script execution"), std::string("StdOut:"),
        std::string("hello\n"), std::string("ErrOut:"), std::string("oh\n")}) {
    expected.push_back({line, LogLevel::Information});
  }
  EXPECT_EQ(run.log.lines(), expected);
}

TEST_F(LaunchScriptRun, LogsTheCommandBeforeItRuns) {
  run.platform.onExecute = [](FakePlatform&) { throw LauncherException("No process."); };
  const auto script = scriptOf({{"COMMAND", "java"}});
  EXPECT_EQ(thrownMessage([&] { execute(*script); }), "No process.");
  EXPECT_EQ(run.log.texts(),
            Texts{"Executing launch script command: java in working directory " + directory});
}

TEST_F(LaunchScriptRun, KeepsTheOutputOfAllRuns) {
  run.platform.output = "out";
  run.platform.errors = "err";
  const auto script = scriptOf({{"COMMAND", "java"}});
  execute(*script);
  execute(*script);
  EXPECT_EQ(script->standardOutput(), "outout");
  EXPECT_EQ(script->standardError(), "errerr");
  EXPECT_EQ(run.log.texts().back(), "errerr");
}

TEST_F(LaunchScriptRun, CollectsNothingWithAConsole) {
  run.platform.output = "out";
  const auto byTag = scriptOf({{"COMMAND", "java"}, {"DISPLAY_CONSOLE", "1"}});
  const auto byOption = scriptOf({{"COMMAND", "java"}});
  for (LaunchScript* script : {byTag.get(), byOption.get()}) {
    run.log.clear();
    execute(*script, {}, script == byOption.get());
    EXPECT_TRUE(child().runInBackground);
    EXPECT_FALSE(child().captureOutput);
    EXPECT_TRUE(child().redirectChildOutput);
    EXPECT_EQ(script->standardOutput(), "");
    EXPECT_EQ(run.log.lines().size(), 1U);
  }
}

TEST_F(LaunchScriptRun, HasNoConsoleUnlessTheTagIsANumberOtherThanZero) {
  for (const char* value : {"0", "yes", "true", ""}) {
    const auto script = scriptOf({{"DISPLAY_CONSOLE", value}});
    execute(*script);
    EXPECT_FALSE(child().runInBackground) << value;
  }
}

TEST_F(LaunchScriptRun, CollectsNothingUnlessAskedTo) {
  run.platform.output = "out";
  const auto script = scriptOf({{"COMMAND", "java"}}, false);
  execute(*script);
  EXPECT_FALSE(child().captureOutput);
  EXPECT_FALSE(child().runInBackground);
  EXPECT_EQ(script->standardOutput(), "");
  EXPECT_EQ(run.log.lines().size(), 1U);
}

TEST_F(LaunchScriptRun, OfABareTemplateChangesTheDirectoryAndHasNoConsole) {
  run.platform.output = "out";
  LaunchScript script("java @A@", true, false, launch);
  setJvmTag("A", "x");
  script.execute(jvmFile, nullptr, false);
  EXPECT_EQ(child().command, "java x");
  EXPECT_EQ(child().workingDirectory, text(directory));
  EXPECT_TRUE(child().captureOutput);
  EXPECT_FALSE(child().runInBackground);
  EXPECT_EQ(script.standardOutput(), "out");
  EXPECT_EQ(script.description(), "");
}

TEST_F(LaunchScriptRun, RunsNothingWhenTheCommandIsWrong) {
  const auto script = scriptOf({{"COMMAND", "java %NOPE%()"}});
  EXPECT_EQ(thrownMessage([&] { execute(*script, {"x"}); }),
            "Launch script error: Invalid function name (NOPE).");
  EXPECT_TRUE(run.platform.commands.empty());
  EXPECT_TRUE(run.platform.settings.empty());
  EXPECT_EQ(run.log.texts(), (Texts{"Launch command:", "java %NOPE%()"}));
}

TEST_F(LaunchScriptRun, ReadsItsTagsOnce) {
  TagFile tags;
  tags.setValue("COMMAND", "before");
  LaunchScript script(tags, true, launch);
  tags.setValue("COMMAND", "after");
  execute(script);
  EXPECT_EQ(child().command, "before");
}

}  // namespace
}  // namespace vessant::test
