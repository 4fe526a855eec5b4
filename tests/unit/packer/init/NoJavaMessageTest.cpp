// What a user reads without a Java: run by the shell, as the launch command runs it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "launcher/tagfile/TagFile.h"
#include "packer/init/Project.h"
#include "support/FakeRun.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string tagOf(const std::string& fileText) {
  TempTree tree;
  RecordingLog log;
  const std::string path = tree.file("no-java.jvm", fileText);
  return str(TagFile(SString(std::string_view(path)), log).getValue(kNoJavaTag));
}

ProcessResult shown(const std::string& fileText) {
  return runProcess({.command = {"/bin/sh", "-c", tagOf(fileText) + " /bin/java -jar x"}});
}

TEST(NoJavaMessage, TellsOnStandardErrorAndEndsWithThree) {
  const ProcessResult result = shown(noJavaFileText({17, 21}));
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "This program needs Java 17 to 21, and none was found.\n"
            "Install one, for example with one of these commands:\n"
            "  Debian, Ubuntu:  sudo apt install openjdk-17-jre\n"
            "  Fedora:          sudo dnf install java-17-openjdk\n"
            "  openSUSE:        sudo zypper install java-17-openjdk\n"
            "  Arch:            sudo pacman -S jre17-openjdk\n"
            "Or name one that is somewhere else, with the arguments\n"
            "  -vs:javahome DIRECTORY\n"
            "or in the environment variable JAVA_HOME: the directory that holds bin/java.\n");
}

TEST(NoJavaMessage, RecommendsWhatASystemHasAnyhowForAnOpenRange) {
  const std::string text = shown(noJavaFileText({11, {}})).err;
  EXPECT_THAT(text, HasSubstr("apt install default-jre\n"));
  EXPECT_THAT(text, HasSubstr("java-latest-openjdk\n"));
  EXPECT_THAT(text, HasSubstr("zypper install java-21-openjdk\n"));
  EXPECT_THAT(text, HasSubstr("pacman -S jre-openjdk\n"));
  EXPECT_THAT(shown(noJavaFileText({22, {}})).err, HasSubstr("apt install openjdk-25-jre\n"));
}

TEST(NoJavaMessage, KnowsTheNamesOfJava8) {
  EXPECT_THAT(shown(noJavaFileText({8, 8})).err, HasSubstr("dnf install java-1.8.0-openjdk\n"));
}

TEST(NoJavaMessage, RecommendsTheEndOfARangeWithoutALongTermVersion) {
  EXPECT_THAT(shown(noJavaFileText({18, 20})).err, HasSubstr("openjdk-18-jre\n"));
}

TEST(NoJavaMessage, TellsWhyABundledRuntimeMayBeMissing) {
  const ProcessResult result = shown(noRuntimeFileText());
  EXPECT_EQ(result.status, 3);
  EXPECT_THAT(result.err,
              StartsWith("The Java that comes with this program could not be unpacked"));
  EXPECT_THAT(result.err, HasSubstr("-vs:tempdir DIRECTORY"));
}

TEST(NoJavaMessage, HoldsNothingThatTheMacrosWouldRead) {
  for (const std::string& text : {noJavaFileText({8, {}}), noRuntimeFileText()}) {
    for (const char* mark : {"%", "@", "#"}) EXPECT_THAT(text, Not(HasSubstr(mark)));
  }
}

}  // namespace
}  // namespace vessant::test
