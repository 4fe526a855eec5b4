// The environment variables of a launch: JAVA_HOME for its length, and those that the JVM file sets
// for a wizard.

#include "LaunchRoom.h"

namespace vessant::test {
namespace {

class LaunchEnvironment : public LaunchRoom {
 protected:
  using Settings = std::vector<std::pair<std::string, std::string>>;

  LaunchEnvironment() {
    setJvmTag("JVM_HOME", "/opt/java");
    // Marks in the list of settings when the program runs, and with which home.
    run.platform.onExecute = [](FakePlatform& platform) {
      platform.settings.emplace_back("(program)", platform.environment["JAVA_HOME"]);
    };
  }

  void execute() { LaunchScript("java", true, true, launch).execute(jvmFile, nullptr, false); }
  /// The variables that a launch of a file with the mode byte sets beside JAVA_HOME.
  Settings wizardSettings(int mode) {
    file.modeByte(mode);
    load();
    execute();
    Settings result;
    for (const auto& setting : run.platform.settings) {
      if (setting.first == "(program)") break;
      if (setting.first != "JAVA_HOME") result.push_back(setting);
    }
    return result;
  }
};

TEST_F(LaunchEnvironment, HasTheJavaHomeForTheProgramAlone) {
  run.platform.environment["JAVA_HOME"] = "/usr/old";
  execute();
  EXPECT_EQ(run.platform.settings, (Settings{{"JAVA_HOME", "/opt/java"},
                                             {"(program)", "/opt/java"},
                                             {"JAVA_HOME", "/usr/old"}}));
}

TEST_F(LaunchEnvironment, HasAnEmptyJavaHomeAfterwardsWhenThereWasNone) {
  execute();
  ASSERT_EQ(run.platform.environment.count("JAVA_HOME"), 1U);
  EXPECT_EQ(run.platform.environment["JAVA_HOME"], "");
}

TEST_F(LaunchEnvironment, HasTheJavaHomeAsItStands) {
  setJvmTag("JVM_HOME", "@JVM_EXE@\\");
  execute();
  EXPECT_EQ(run.platform.settings.front(),
            (std::pair<std::string, std::string>{"JAVA_HOME", "@JVM_EXE@\\"}));
}

TEST_F(LaunchEnvironment, HasAnEmptyJavaHomeWithoutTheTag) {
  run.platform.environment["JAVA_HOME"] = "/usr/old";
  jvmTags.removeTag("JVM_HOME");
  execute();
  EXPECT_EQ(run.platform.settings,
            (Settings{{"JAVA_HOME", ""}, {"(program)", ""}, {"JAVA_HOME", "/usr/old"}}));
}

TEST_F(LaunchEnvironment, KeepsTheJavaHomeWhenTheProgramCannotBeStarted) {
  run.platform.environment["JAVA_HOME"] = "/usr/old";
  run.platform.onExecute = [](FakePlatform&) { throw LauncherException("No process."); };
  EXPECT_EQ(thrownMessage([&] { execute(); }), "No process.");
  EXPECT_EQ(run.platform.environment["JAVA_HOME"], "/opt/java");
}

TEST_F(LaunchEnvironment, ShowsTheOldJavaHomeToTheCommandsMacros) {
  run.platform.environment["JAVA_HOME"] = "/usr/old";
  LaunchScript("java #JAVA_HOME#", true, true, launch).execute(jvmFile, nullptr, false);
  EXPECT_EQ(run.platform.commands.back().command, "java /usr/old");
}

TEST_F(LaunchEnvironment, GetsTheWizardsVariablesInModeZero) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  EXPECT_EQ(wizardSettings(0), (Settings{{"FOO", "bar"}}));
}

TEST_F(LaunchEnvironment, GetsTheWizardsVariablesInModeTwo) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  EXPECT_EQ(wizardSettings(2), (Settings{{"FOO", "bar"}}));
}

TEST_F(LaunchEnvironment, GetsNoneOfThemInAnotherMode) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  for (const int mode : {1, 3, 48, 255}) {
    lastTrailerByte = kNoModeByte;
    EXPECT_EQ(wizardSettings(mode), Settings{}) << mode;
  }
}

TEST_F(LaunchEnvironment, GetsNoneOfThemWhenTheLauncherCannotBeRead) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  launcherFileName = text(tree.path("app/missing"));
  EXPECT_EQ(wizardSettings(0), Settings{});
}

TEST_F(LaunchEnvironment, AsksTheRunningLauncherForTheMode) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  LauncherFileBuilder running;
  launcherFileName = text(running.modeByte(1).write(tree.path("app/running.bin")));
  EXPECT_EQ(wizardSettings(0), Settings{});
}

TEST_F(LaunchEnvironment, ReadsTheModeOnce) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  EXPECT_EQ(wizardSettings(1), Settings{});
  EXPECT_EQ(wizardSettings(0), Settings{});
}

TEST_F(LaunchEnvironment, SetsTheWizardsVariablesInTheirOrder) {
  for (const char* value : {"  FOO = bar  ", "A=b=c", "EMPTY=", "BARE", " \t ", "", "FOO=again",
                            " SPACED OUT =\tx y\r\n", "=nameless"}) {
    jvmTags.addValue("SET_ENV_FOR_WIZARD", value);
  }
  EXPECT_EQ(wizardSettings(0), (Settings{{"FOO", "bar"},
                                         {"A", "b=c"},
                                         {"EMPTY", ""},
                                         {"BARE", ""},
                                         {"FOO", "again"},
                                         {"SPACED OUT", "x y"},
                                         {"", "nameless"}}));
}

TEST_F(LaunchEnvironment, ExpandsNothingInTheWizardsVariables) {
  setJvmTag("SET_ENV_FOR_WIZARD", "LIB=@JVM_HOME@/lib:#LIB#");
  EXPECT_EQ(wizardSettings(0), (Settings{{"LIB", "@JVM_HOME@/lib:#LIB#"}}));
}

TEST_F(LaunchEnvironment, KeepsTheWizardsVariables) {
  setJvmTag("SET_ENV_FOR_WIZARD", "FOO=bar");
  file.modeByte(0);
  load();
  execute();
  EXPECT_EQ(run.platform.environment["FOO"], "bar");
}

TEST_F(LaunchEnvironment, MayChangeTheJavaHomeForTheWizard) {
  setJvmTag("SET_ENV_FOR_WIZARD", "JAVA_HOME=/other");
  file.modeByte(0);
  load();
  execute();
  EXPECT_EQ(run.platform.settings.at(2),
            (std::pair<std::string, std::string>{"(program)", "/other"}));
}

}  // namespace
}  // namespace vessant::test
