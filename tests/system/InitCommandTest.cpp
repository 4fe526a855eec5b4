// From a jar to a running installer: `vspack init`, `vspack pack` and what the user then sees.
// Skipped where there is no JDK.

#include "support/BuildPaths.h"
#include "system/RealJdk.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kHelloJar = std::string(kBinaryDir) + "/share/hello.jar";

struct InitCommand : SystemTest {
  void SetUp() override {
    const std::optional<RealJdk> found = findRealJdk();
    if (!found || !fs::exists(kHelloJar)) GTEST_SKIP() << "no JDK on this machine";
    jdk = *found;
    environment = {{"PATH", "/usr/bin:/bin"}, {"LANG", "C"}, {"JAVA_HOME", jdk.home}};
  }

  ProcessResult vspack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), kVspack);
    return runCommand(arguments);
  }
  /// Writes and packs a project for the example's jar, called `jar`, in the directory `name`.
  std::string install(const std::string& name, const std::string& jar,
                      std::vector<std::string> more = {}) {
    const std::string copy = tree.file(jar, readFile(kHelloJar));
    const std::string directory = tree.path(name);
    more.insert(more.begin(), {"init", directory, "--jar", copy, "--main", "Hello"});
    EXPECT_THAT(vspack(more), Ended(0, ""));
    EXPECT_THAT(vspack({"check", directory}), Ended(0, "")) << "nothing to complain of";
    EXPECT_THAT(vspack({"pack", directory}), Ended(0, ""));
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
      if (entry.path().string().ends_with("-installer")) return entry.path().string();
    }
    ADD_FAILURE() << "there is no installer";
    return "";
  }
  ProcessResult start(const std::string& installer, std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {installer, "-vs:tempdir", tempRoot});
    return runCommand(arguments);
  }

  RealJdk jdk;
};

TEST_F(InitCommand, MakesAnInstallerThatRunsTheProgramCalmly) {
  const std::string installer = install("app", "hello.jar", {"--title", "Hello"});
  const ProcessResult result = start(installer, {"two words", "--exit=7"});
  EXPECT_EQ(result.status, 7);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(maskTempNames(result.out),
            "Hello\nHello from Java " + jdk.version + "\n  home:       " + jdk.home +
                "\n  JAVA_HOME:  " + jdk.home + "\n  class path: " + tempRoot +
                "/vsj/hello.jar\n  argument:   [two words]\n"
                "  argument:   [--exit=7]\n");
}

TEST_F(InitCommand, LoadsNoClassFromBesideTheInstaller) {
  const std::string installer = install("app", "hello.jar");
  tree.file("app/Hello.class", "planted");
  tree.file("elsewhere/Hello.class", "planted");
  tree.file("app/hello-installer.ja", "-Dno.such=x -XXbroken");
  EXPECT_EQ(start(installer, {}).status, 0);
  fs::remove(tree.path("elsewhere/Hello.class"));
}

TEST_F(InitCommand, TellsWhoeverHasNoFittingJava) {
  const std::string installer = install("app", "hello.jar", {"--java", "98-99"});
  const ProcessResult result = start(installer, {"x"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "hello\n");
  EXPECT_THAT(result.err, StartsWith("This program needs Java 98 to 99, and none was found.\n"));
  const ProcessResult silent = start(installer, {"-vs:silent"});
  EXPECT_EQ(silent.status, 3);
  EXPECT_EQ(silent.out, "");
  EXPECT_THAT(silent.err, HasSubstr("-vs:javahome DIRECTORY\n"));
}

TEST_F(InitCommand, WorksWithNamesThatMeanSomethingToShellsAndMacros) {
  const std::string odd = "it's \"odd\" $HOME `x` 100% @JVM_HOME@ #PATH# %CP%()";
  tree.dir(odd);
  const std::string installer = install(odd + "/app", odd + ".jar", {"--title", odd});
  const ProcessResult result = start(installer, {"a b", "it's", "say \"hi\"", "@x@", "#y#", "%z%"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, StartsWith(odd + "\nHello from Java "));
  EXPECT_THAT(result.out, HasSubstr("  argument:   [a b]\n  argument:   [it's]\n"
                                    "  argument:   [say \"hi\"]\n  argument:   [@x@]\n"
                                    "  argument:   [#y#]\n  argument:   [%z%]\n"));
}

TEST_F(InitCommand, WorksWithJavaHomesAndTemporaryRootsInOddPlaces) {
  const std::string installer = install("app", "hello.jar");
  tree.dir("homes of o'brien");
  const std::string home = tree.path("homes of o'brien/jdk");
  fs::create_directory_symlink(jdk.home, home);
  environment["JAVA_HOME"] = home;
  const std::string root = tree.dir("temp (of) two & words;");
  const ProcessResult result = runCommand({installer, "-vs:tempdir", root});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("  JAVA_HOME:  " + home + "\n"));
}

TEST_F(InitCommand, ShowsTitlesInTheUsersEncoding) {
  const std::string installer = install("app", "hello.jar", {"--title", "Größe"});
  environment["LC_ALL"] = "C.UTF-8";
  EXPECT_THAT(start(installer, {}).out, StartsWith("Größe\n"));
}

TEST_F(InitCommand, RunsABundledJavaWhereThereIsNone) {
  if (!fs::exists(jdk.home + "/bin/jlink")) GTEST_SKIP() << "no jlink";
  ASSERT_EQ(runCommand({jdk.home + "/bin/jlink", "--add-modules", "java.base", "--output",
                        tree.path("runtime")})
                .status,
            0);
  const std::string installer = install("app", "hello.jar", {"--jre", tree.path("runtime")});
  environment = {{"PATH", tree.dir("nothing")}, {"LANG", "C"}};
  const ProcessResult result = start(installer, {"--exit=4"});
  EXPECT_EQ(result.status, 4) << result.err;
  EXPECT_THAT(maskTempNames(result.out), StartsWith("hello\nHello from Java " + jdk.version +
                                                    "\n  home:       " + tempRoot + "/vsj/jre\n"));
  EXPECT_THAT(result.out, Not(HasSubstr("Preparing")));
}

TEST_F(InitCommand, PrefersAJavaOfTheMachineWhenARangeIsNamed) {
  if (!fs::exists(jdk.home + "/bin/jlink")) GTEST_SKIP() << "no jlink";
  ASSERT_EQ(runCommand({jdk.home + "/bin/jlink", "--add-modules", "java.base", "--output",
                        tree.path("runtime")})
                .status,
            0);
  const std::string runtime = tree.path("runtime");
  const std::string own = install("own", "hello.jar", {"--jre", runtime, "--java", "8"});
  EXPECT_THAT(start(own, {}).out, HasSubstr("  home:       " + jdk.home + "\n"));
  writeFile(tree.path("own/java.jvm"), vspack({"jvm", "--min", "99"}).out);
  ASSERT_THAT(vspack({"pack", tree.path("own")}), Ended(0, ""));
  EXPECT_THAT(maskTempNames(start(own, {}).out),
              HasSubstr("  home:       " + tempRoot + "/vsj/jre\n"));
}

TEST_F(InitCommand, ReportsAProgramThatASignalEnds) {
  const std::string installer = install("app", "hello.jar");
  tree.program("dying/bin/java", "#!/bin/sh\ncase \"$*\" in *Verify*) exec " + jdk.home +
                                     "/bin/java \"$@\" ;; esac\nkill -9 $$\n");
  EXPECT_EQ(start(installer, {"-vs:javahome", tree.path("dying")}).status, 128 + 9);
}

TEST_F(InitCommand, WritesNothingWhenItRefuses) {
  const std::string jar = tree.file("hello.jar", readFile(kHelloJar));
  const std::string directory = tree.path("refused");
  const std::vector<std::vector<std::string>> calls = {
      {"--jar", jar},
      {"--jar", jar, "--main", "Nope"},
      {"--jar", jar, "--main", "Hello", "--java", "21-17"},
      {"--jar", jar, "--main", "Hello", "--title", "a\nb"},
      {"--jar", jar, "--main", "Hello", "--jre", tree.path("no java")},
      {"--jar", jar, "--main", "Hello", "--jre", jdk.home, "--java", "99"},
      {"--jar", tree.path("none.jar")},
      {},
  };
  for (std::vector<std::string> call : calls) {
    call.insert(call.begin(), {"init", directory});
    const ProcessResult result = vspack(call);
    EXPECT_EQ(result.status, 2) << ::testing::PrintToString(call);
    EXPECT_THAT(result.err, StartsWith("vspack: "));
    EXPECT_EQ(result.out, "");
    EXPECT_FALSE(fs::exists(directory)) << ::testing::PrintToString(call);
  }
}

TEST_F(InitCommand, LeavesNothingWhenItIsInterrupted) {
  const std::string jar = tree.file("jar/hello.jar", readFile(kHelloJar));
  for (const char* signal : {"INT", "TERM", "HUP"}) {
    tree.program("home/bin/java", std::string("#!/bin/sh\nkill -") + signal + " $PPID\n");
    tree.dir("empty");
    for (const char* directory : {"new/app", "empty"}) {
      tree.dir("new");
      const ProcessResult result = vspack({"init", tree.path(directory), "--jar", jar, "--main",
                                           "Hello", "--jre", tree.path("home")});
      EXPECT_NE(result.status, 0) << signal;
      EXPECT_THAT(tree.list("new"), ::testing::IsEmpty()) << signal;
      EXPECT_THAT(tree.list("empty"), ::testing::IsEmpty()) << signal;
    }
  }
}

TEST_F(InitCommand, LeavesAFullDirectoryAloneUnlessForced) {
  install("app", "hello.jar");
  const std::string jar = tree.path("hello.jar");
  const std::vector<std::string> again = {"init", tree.path("app"), "--jar",
                                          jar,    "--main",         "Hello"};
  EXPECT_EQ(vspack(again).status, 2);
  std::vector<std::string> forced = again;
  forced.emplace_back("--force");
  EXPECT_THAT(vspack(forced), Ended(0, ""));
}

}  // namespace
}  // namespace vessant::test
