// A launch script over the real platform: what a program sees of the command, its directory and its
// environment.

#include "LaunchRoom.h"
#include "launcher/linux/LinuxPlatformImpl.h"
#include "support/BuildPaths.h"

namespace vessant::test {
namespace {

class ChildRun : public LaunchRoom {
 protected:
  std::int32_t execute(std::string_view command, const Texts& passThrough) {
    StringDeque arguments;
    for (const std::string& argument : passThrough) arguments.add(text(argument));
    LaunchScript script(command, true, true, context);
    const std::int32_t status = script.execute(jvmFile, &arguments, false);
    output = str(script.standardOutput());
    return status;
  }

  LinuxPlatformImpl platform;
  RunServices services{run.log, run.progress, run.messages, run.cancelFlag, platform};
  LaunchContext context{services,        embeddedFiles,    tempFiles,
                        modeByte,        launcherFileName, originalLauncherFileName,
                        classPathPrefix, classPathSuffix};
  std::string output;
};

TEST_F(ChildRun, HandsTheArgumentsOverAsTheyWere) {
  const Texts arguments = {"a\"b c", "", "'single'", "two  blanks", "*", "~", "a;b&c|d>e", "\t"};
  Texts given;
  std::string expected;
  for (const std::string& argument : arguments) {
    given.insert(given.end(), {"text", argument});
    expected += argument + "\n";
  }
  EXPECT_EQ(execute("\"" + std::string(kTestHelper) + "\"", given), 0);
  EXPECT_EQ(output, expected);
}

TEST_F(ChildRun, ShowsItsDirectoryHomeAndStatus) {
  setJvmTag("JVM_HOME", "/opt/java");
  EXPECT_EQ(
      execute("\"" + std::string(kTestHelper) + "\"", {"cwd", "env", "JAVA_HOME", "exit", "42"}),
      42);
  EXPECT_EQ(output, tree.path("app") + "\n/opt/java\n");
}

}  // namespace
}  // namespace vessant::test
