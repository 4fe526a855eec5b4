// `vspack jvm` and `vspack bundle-jvm` on a real Java of the machine: what they write is what the
// launcher takes. Skipped where there is no JDK.

#include "support/BuildPaths.h"
#include "system/RealJdk.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kVerifyJar = std::string(kBinaryDir) + "/share/verify.jar";

struct JvmCommand : SystemTest {
  void SetUp() override {
    const std::optional<RealJdk> found = findRealJdk();
    if (!found || !fs::exists(kVerifyJar)) GTEST_SKIP() << "no JDK on this machine";
    jdk = *found;
    environment["PATH"] = "/usr/bin:/bin";
  }

  ProcessResult vspack(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), kVspack);
    return runCommand(arguments);
  }
  /// Whether the launcher finds that the JDK satisfies the JVM file that vspack writes.
  bool accepts(std::vector<std::string> arguments) {
    const std::string jvmFile = tree.path("x.jvm");
    arguments.insert(arguments.begin(), {"jvm", "-o", jvmFile});
    const ProcessResult written = vspack(arguments);
    EXPECT_EQ(written.status, 0) << written.err;
    if (!fs::exists(launcher)) {
      file.add(kVerificationClass, 5, "verify.jar", readFile(kVerifyJar));
    }
    const std::string text =
        "ACTION: VERIFY_JVM\n" + tag("VERIFY_JVM_FILE", jvmFile) + tag("VERIFY_JVM_HOME", jdk.home);
    const ProcessResult result = run({"-vs:in", tree.file("input.tag", text)});
    EXPECT_THAT(result.out, AnyOf("0\n", "1\n"));
    return result.out == "1\n";
  }

  RealJdk jdk;
};

TEST_F(JvmCommand, WritesAFileThatAcceptsTheJavaOfAHome) {
  EXPECT_TRUE(accepts({jdk.home}));
  EXPECT_TRUE(accepts({jdk.home + "/."}));
}

TEST_F(JvmCommand, WritesRangesThatHoldOrMissAJava) {
  const int own = jdk.feature();
  EXPECT_TRUE(accepts({"--min", std::to_string(own)}));
  EXPECT_TRUE(accepts({"--min", "8", "--max", std::to_string(own)}));
  EXPECT_FALSE(accepts({"--min", std::to_string(own + 1)}));
  EXPECT_FALSE(accepts({"--min", "8", "--max", std::to_string(own - 1)}));
}

TEST_F(JvmCommand, AsksForModulesAndVendor) {
  EXPECT_TRUE(accepts({"--min", "8", "--modules", "java.base,java.logging"}));
  EXPECT_FALSE(accepts({"--min", "8", "--modules", "no.such.module"}));
  EXPECT_FALSE(accepts({"--min", "8", "--vendor", "Nobody"}));
  EXPECT_TRUE(accepts({"--min", "8", "--vendor", "..."}));
}

TEST_F(JvmCommand, WritesToStandardOutputByItself) {
  const ProcessResult result = vspack({"jvm", "--min", "17", "--max", "21"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, StartsWith("DESC: Java 17 to 21\nJVM_PROPERTIES:\n"
                                     "  vessant.java.min.17=true\n  vessant.java.max.21=true\n"));
}

TEST_F(JvmCommand, RefusesWhatIsNoJavaHome) {
  const std::string place = tree.dir("not java");
  const ProcessResult result = vspack({"jvm", place, "-o", tree.path("y.jvm")});
  EXPECT_EQ(result.status, 2);
  EXPECT_EQ(result.err, "vspack: " + place + ": is no Java home: it has no program bin/java\n");
  EXPECT_FALSE(fs::exists(tree.path("y.jvm")));
}

TEST_F(JvmCommand, RefusesAJavaThatDoesNotAnswer) {
  tree.program("broken/bin/java", "#!/bin/sh\nexit 7\n");
  EXPECT_THAT(vspack({"jvm", tree.path("broken")}).err,
              HasSubstr("its Java does not say what it is (it ended with status 7)"));
}

TEST_F(JvmCommand, RefusesAHomeThatNoLauncherTakes) {
  for (const std::string name : {"100%", "a$b", "a\"b", "a`b", "a@b", "#a#"}) {
    tree.dir("homes");
    fs::create_directory_symlink(jdk.home, tree.path("homes/" + name));
    const ProcessResult result = vspack({"jvm", tree.path("homes/" + name)});
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_THAT(result.err, HasSubstr("no launcher can verify a Java in a path with")) << name;
  }
}

TEST_F(JvmCommand, WantsEitherAHomeOrARange) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"jvm"}, {"jvm", "--min", "17", jdk.home}, {"jvm", "--min", "x"}}) {
    const ProcessResult result = vspack(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("vspack: "));
  }
}

struct BundleJvmCommand : JvmCommand {
  void SetUp() override {
    JvmCommand::SetUp();
    if (IsSkipped()) return;
    if (!fs::exists(jdk.home + "/bin/jlink")) GTEST_SKIP() << "no jlink on this machine";
    environment["TMPDIR"] = tree.dir("work");
  }
  ProcessResult bundle(const std::string& name, const std::string& more = "--modules=java.base") {
    return vspack({"bundle-jvm", jdk.home, more, "-o", tree.path(name)});
  }
};

TEST_F(BundleJvmCommand, MakesTheSameBytesAgain) {
  ASSERT_THAT(bundle("a"), Ended(0, ""));
  ASSERT_THAT(bundle("b"), Ended(0, ""));
  EXPECT_TRUE(readFile(tree.path("a")) == readFile(tree.path("b")));
  EXPECT_THAT(tree.list("work"), ::testing::IsEmpty());
}

TEST_F(BundleJvmCommand, MakesARuntimeThatRunsAndTellsOfItself) {
  EXPECT_EQ(bundle("there/install").status, 2) << "the directory is not there";
  tree.dir("there");
  ASSERT_THAT(bundle("there/install"), Ended(0, ""));
  const ProcessResult unpacked =
      runProcess({.command = {"./install"}, .directory = tree.path("there")});
  ASSERT_EQ(unpacked.status, 0) << unpacked.err;
  EXPECT_THAT(readFile(tree.path("there/jvm")), HasSubstr("\nJVM_HOME: jre\n"));
  const ProcessResult java =
      runProcess({.command = {tree.path("there/jre/bin/java"), "--list-modules"}});
  EXPECT_THAT(java.out, StartsWith("java.base@"));
}

TEST_F(BundleJvmCommand, RefusesModulesThatAreNot) {
  const ProcessResult result = bundle("x", "--modules=no.such.module");
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err,
              AllOf(HasSubstr("no.such.module"), HasSubstr("jlink: ended with status")));
  EXPECT_FALSE(fs::exists(tree.path("x")));
  EXPECT_THAT(tree.list("work"), ::testing::IsEmpty());
}

TEST_F(BundleJvmCommand, RefusesADirectoryThatHasButALinkToJava) {
  tree.dir("usr/bin");
  fs::create_symlink(jdk.home + "/bin/java", tree.path("usr/bin/java"));
  const ProcessResult result = vspack({"bundle-jvm", tree.path("usr"), "-o", tree.path("x")});
  EXPECT_EQ(result.status, 2);
  EXPECT_THAT(result.err, HasSubstr(tree.path("usr") + ": is not the home of its Java"));
}

}  // namespace
}  // namespace vessant::test
