// The verification class on a real JVM: the protocol that the launcher reads.

#include <gtest/gtest.h>

#include "launcher/base/StringPair.h"
#include "launcher/jvm/JVMFile.h"
#include "support/FakeRun.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

ProcessResult verify(std::vector<std::string> names, const std::vector<std::string>& options = {}) {
  std::vector<std::string> command = {VESSANT_JAVA};
  command.insert(command.end(), options.begin(), options.end());
  command.insert(command.end(), {"-cp", VESSANT_VERIFY_JAR, "Verify"});
  command.insert(command.end(), names.begin(), names.end());
  return runProcess({command});
}

TEST(VerifyClass, PrintsTheMagicLineAndEachValueInOrder) {
  const ProcessResult result = verify({"b", "a"}, {"-Da=first", "-Db=second value"});
  EXPECT_EQ(result.out, "1739021872\nsecond value\nfirst\n");
  EXPECT_EQ(result.status, 0);
}

TEST(VerifyClass, PrintsTheMagicLineAloneWithoutNames) {
  EXPECT_EQ(verify({}).out, "1739021872\n");
}

TEST(VerifyClass, PrintsAnEmptyLineForAnUnknownProperty) {
  EXPECT_EQ(verify({"no.such.property", "", "a"}, {"-Da=x"}).out, "1739021872\n\n\nx\n");
}

TEST(VerifyClass, KeepsEachValueOnOneLine) {
  EXPECT_EQ(verify({"line.separator", "a"}, {"-Da=x\ny"}).out, "1739021872\n \nx y\n");
}

TEST(VerifyClass, RunsOnEveryJavaFrom8On) {
  constexpr char kJava8ClassFile = 52;  // the major version, in the JVM's class file format
  const std::string bytes = readFile(VESSANT_VERIFY_CLASS);
  ASSERT_GT(bytes.size(), 8U);
  EXPECT_EQ(bytes.substr(0, 4), "\xCA\xFE\xBA\xBE");
  EXPECT_EQ(bytes[6], 0);
  EXPECT_EQ(bytes[7], kJava8ClassFile);
}

TEST(VerifyClass, AnswersAsTheLauncherExpects) {
  RecordingLog log;
  StringPairPtrDeque expected;
  auto pair = std::make_unique<StringPair>();
  pair->name = "java.vm.specification.name";
  pair->value = "Java Virtual Machine...";
  expected.add(std::move(pair));
  const ProcessResult result = verify({"java.vm.specification.name"});
  EXPECT_TRUE(JVMFile::matchOutput(SString(std::string_view(result.out)), expected, log));
}

}  // namespace
}  // namespace vessant::test
