// The verification class on a real JVM: the protocol that the launcher reads.

#include <gtest/gtest.h>

#include "launcher/base/Deque.h"
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

/// The feature version of the JVM under test, as its java.specification.version tells it.
int feature() {
  const std::string out = verify({"java.specification.version"}).out;
  const std::string version = out.substr(out.find('\n') + 1);
  return std::stoi(version.starts_with("1.") ? version.substr(2) : version);
}

/// The one value of the answer.
std::string answer(const std::string& name, const std::vector<std::string>& options = {}) {
  const std::string out = verify({name}, options).out;
  const std::string value = out.substr(out.find('\n') + 1);
  return value.substr(0, value.find('\n'));
}

TEST(VerifyClass, ComparesItsVersionWithTheOldestAndTheNewestWanted) {
  const int own = feature();
  std::vector<std::string> names;
  for (const int version : {own - 1, own, own + 1}) {
    names.push_back("vessant.java.min." + std::to_string(version));
    names.push_back("vessant.java.max." + std::to_string(version));
  }
  EXPECT_EQ(verify(names).out, "1739021872\ntrue\nfalse\ntrue\ntrue\nfalse\ntrue\n");
}

TEST(VerifyClass, TakesOneEightForEight) {
  EXPECT_EQ(answer("vessant.java.min.1.8"), "true");
  EXPECT_EQ(answer("vessant.java.max.1.8"), feature() == 8 ? "true" : "false");
}

TEST(VerifyClass, AnswersEmptyForWhatIsNoVersion) {
  for (const char* text : {"", "x", "-1", "+17", "17.0", "1.", "99999999999"}) {
    EXPECT_EQ(answer(std::string("vessant.java.min.") + text), "") << text;
    EXPECT_EQ(answer(std::string("vessant.java.max.") + text), "") << text;
  }
}

TEST(VerifyClass, KnowsTheRuntimesModules) {
  EXPECT_EQ(answer("vessant.module.java.base"), "true");
  EXPECT_EQ(answer("vessant.module.no.such.module"), "false");
  EXPECT_EQ(answer("vessant.module."), "false");
}

TEST(VerifyClass, KnowsAJdkByItsCompiler) {
  EXPECT_EQ(answer("vessant.jdk"), "true") << "the tests run on the JDK that built the class";
}

TEST(VerifyClass, KnowsTheWidthOfAnAddress) {
  EXPECT_EQ(answer("vessant.bits"), answer("sun.arch.data.model"));
}

TEST(VerifyClass, PrefersARealPropertyToItsOwnAnswer) {
  EXPECT_EQ(answer("vessant.java.min.8", {"-Dvessant.java.min.8=mine"}), "mine");
  EXPECT_EQ(answer("vessant.bits", {"-Dvessant.bits="}), "");
}

TEST(VerifyClass, AnswersEmptyForOtherNamesOfItsOwn) {
  for (const char* name : {"vessant.", "vessant.java", "vessant.java.17", "vessant.bit"}) {
    EXPECT_EQ(answer(name), "") << name;
  }
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
