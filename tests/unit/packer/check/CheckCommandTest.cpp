// The real vspack check: what it writes, where, and what it ends with.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "JarBuilder.h"
#include "support/BuildPaths.h"
#include "support/LauncherFileBuilder.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kJvm =
    "DESC: Java 17\nJVM_PROPERTIES: vessant.java.min.17=true\nJVM_EXE: bin/java\n"
    "PATH_HINT: jre\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n";

constexpr const char* kGolden =
    "app.manifest:2: error: a manifest has no tag \"MOED\"; did you mean \"MODE\"? "
    "[unknown-tag]\n"
    "app.launch:2: error: the value ends at its closing quote, so \"%CP%() %RUNTIME_JAVARGS%() "
    "app.Mian\" is ignored: put all of it between the quotes, and double each quote inside, or "
    "begin the command with a word, such as exec [text-behind-quote]\n"
    "app.launch:2: error: there is no function %RUNTIME_JAVARGS%; did you mean "
    "\"RUNTIME_JAVAARGS\"? [unknown-function]\n"
    "app.instructions:2: error: too few arguments: write FIND_JVM show-progress show-failure "
    "[missing-argument]\n"
    "app.instructions:3: error: from here the script can end with status 0 without having launched "
    "anything: end that way with \"ILAUNCH 0 0\", which fails with status 255, or launch a JVM "
    "file that tells the user what is missing [ends-without-launch]\n"
    "app.instructions:4: error: this is no comment but an unknown command: write \"// \", with a "
    "blank behind the slashes [bad-comment]\n"
    "java.jvm:2: error: only \"name=value\" can be said of a property, and \"name=value...\" for "
    "a prefix; a range of Java versions is vessant.java.min.17=true and vessant.java.max.21=true "
    "[bad-property]\n"
    "java.jvm:5: error: the class path follows right behind \"-cp\": put the blank between them "
    "in quotes: \"-cp \" [missing-blank]\n"
    "java.jvm:6: error: a JVM file has no tag \"CLASSPATH_SEPERATOR\"; did you mean "
    "\"CLASSPATH_SEPARATOR\"? [unknown-tag]\n";

class CheckCommandTest : public testing::Test {
 protected:
  CheckCommandTest() {
    tree.file("app.manifest",
              "OUTPUT: setup\nFILES:\n  instructions 1 app.instructions\n"
              "  launch-script 2 app.launch\n  verification 3 verify.jar\n"
              "  archive 4 app.jar\n  jvm 17 java.jvm\n/:\n");
    tree.file("app.instructions",
              "INSTRUCTIONS:\n  FIND_JVM 1 1\n  JMP0 @N1@ none\n  LAUNCH \"@S2@\" 1\n"
              "  GOTO end\n  :none\n  ILAUNCH 0 0\n  :end\n/:\n");
    tree.file("app.launch", "DESC: Hello\nCOMMAND: exec '@JVM_HOME@/@JVM_EXE@' %CP%() app.Main\n");
    tree.file("verify.jar", jarBytes({{"Verify.class", "x"}}));
    tree.file("app.jar", jarBytes({{"app/Main.class", "x"}}));
    tree.file("java.jvm", kJvm);
  }

  ProcessResult check(std::vector<std::string> arguments) {
    std::vector<std::string> command = {kVspack, "check"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ProcessRequest request{command};
    request.directory = tree.root();
    return runProcess(request);
  }

  void expectFine(const std::string& subject) {
    const ProcessResult result = check({subject});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
  }

  TempTree tree;
};

TEST_F(CheckCommandTest, RefusesToReplaceWhatItReads) {
  std::filesystem::create_hard_link(tree.path("app.jar"), tree.path("same.jar"));
  for (const char* output : {"app.jar", "./app.manifest", "same.jar"}) {
    tree.file("app.manifest",
              std::string("FILES:\n  instructions 1 app.instructions\n"
                          "  launch-script 2 app.launch\n  verification 3 verify.jar\n"
                          "  archive 4 app.jar\n  jvm 17 java.jvm\n/:\nOUTPUT: ") +
                  output + "\n");
    const ProcessResult result = check({"app.manifest"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, StartsWith("app.manifest:8: error: packing would replace"));
    EXPECT_THAT(result.err, HasSubstr("[output-is-input]"));
  }
}

TEST_F(CheckCommandTest, SaysNothingOfWhatIsRight) {
  expectFine("app.manifest");
  expectFine(".");
  expectFine(tree.root());
}

/// Mistakes in every text, as one sees them.
TEST_F(CheckCommandTest, WritesOneLineForEachFinding) {
  tree.file("app.manifest",
            "OUTPUT: setup\nMOED: 0\nFILES:\n  instructions 1 app.instructions\n"
            "  launch-script 2 app.launch\n  verification 3 verify.jar\n"
            "  archive 4 app.jar\n  jvm 17 java.jvm\n/:\n");
  tree.file("app.instructions",
            "INSTRUCTIONS:\n  FIND_JVM 1\n  JMP0 @N1@ end\n  //launch\n  LAUNCH \"@S2@\" 1\n"
            "  :end\n/:\n");
  tree.file("app.launch",
            "DESC: Hello\nCOMMAND: \"@JVM_HOME@/@JVM_EXE@\" %CP%() %RUNTIME_JAVARGS%() app.Mian\n");
  tree.file("java.jvm",
            "DESC: Java 17\nJVM_PROPERTIES: java.specification.version>=17\n"
            "JVM_EXE: bin/java\nPATH_HINT: jre\nCLASSPATH: -cp\n"
            "CLASSPATH_SEPERATOR: \":\"\n");
  const ProcessResult result = check({"app.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, kGolden);
}

TEST_F(CheckCommandTest, WritesJsonToStandardOutput) {
  tree.file("java.jvm", std::string(kJvm) + "SEARCH_ALL: yes\n");
  const ProcessResult result = check({"--json", "app.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "");
  const auto json = nlohmann::json::parse(result.out);
  ASSERT_EQ(json["findings"].size(), 1U);
  EXPECT_EQ(json["findings"][0]["file"], "java.jvm");
  EXPECT_EQ(json["findings"][0]["line"], 7);
  EXPECT_EQ(json["findings"][0]["severity"], "error");
  EXPECT_EQ(json["findings"][0]["name"], "bad-boolean");
  EXPECT_EQ(check({"--json", "."}).status, 1);
}

TEST_F(CheckCommandTest, AllowTurnsANameOff) {
  tree.file("java.jvm", std::string(kJvm) + "SEARCH_ALL: yes\n");
  EXPECT_EQ(check({".", "--allow", "bad-boolean"}).status, 0);
  EXPECT_EQ(check({"--allow", "bad-boolean", "."}).status, 0);
  const ProcessResult wrong = check({".", "--allow", "bad-bolean"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_THAT(wrong.err, HasSubstr("did you mean \"bad-boolean\"?"));
}

TEST_F(CheckCommandTest, StrictWarnsOfPlantedClasses) {
  const ProcessResult result = check({".", "--strict"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("./app.launch:2: warning: "));
  EXPECT_THAT(result.err, HasSubstr("[planted-class]"));
}

TEST_F(CheckCommandTest, FileThatIsNotThereHidesNothingElse) {
  tree.file("app.launch", "DESC: Hello\nCOMMAND: exec '@JVM_HOME@/@JVM_EXE@' %CPP%() app.Main\n");
  std::filesystem::remove(tree.path("app.jar"));
  std::filesystem::remove(tree.path("java.jvm"));
  const ProcessResult result = check({"app.manifest"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("app.manifest:6: error: "));
  EXPECT_THAT(result.err, HasSubstr("app.manifest:7: error: "));
  EXPECT_THAT(result.err, HasSubstr("app.launch:2: error: "));
  EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 3) << result.err;
}

TEST_F(CheckCommandTest, ChecksAnInstallerByTheNamesInIt) {
  LauncherFileBuilder builder;
  builder.launcherStub();
  builder.add(FileKind::kScript, 1, "s", readFile(tree.path("app.instructions")));
  builder.add(FileKind::kLaunchScript, 2, "l", readFile(tree.path("app.launch")));
  builder.add(FileKind::kVerificationClass, 3, "v", readFile(tree.path("verify.jar")));
  builder.add(FileKind::kClassPathArchive, 4, "a", readFile(tree.path("app.jar")));
  builder.add(FileKind::kJvmFile, 17, "j", kJvm);
  builder.write(tree.path("good"));
  expectFine("good");
  builder.add(FileKind::kJvmFile, 18, "k", std::string(kJvm) + "SEARCH_ALL: maybe");
  builder.add(FileKind::kApplicationArchive, 19, "x", "x");
  builder.write(tree.path("bad"));
  const ProcessResult result = check({"bad"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("k:7: error: SEARCH_ALL must be 0 or 1, not \"maybe\" "
                                    "[bad-boolean]\n"));
  EXPECT_THAT(result.err, HasSubstr("[unfinished-text]\n"));
}

TEST_F(CheckCommandTest, EndsWith2ForWhatItCannotRead) {
  EXPECT_EQ(check({"nothing"}).status, 2);
  EXPECT_EQ(check({}).status, 2);
  EXPECT_EQ(check({"/bin/true"}).status, 2);
  EXPECT_EQ(check({"/dev/null"}).status, 2);
}

TEST_F(CheckCommandTest, FindsNothingInTheExamples) {
  expectFine(std::string(kSourceDir) + "/examples/hello");
}

}  // namespace
}  // namespace vessant::test
