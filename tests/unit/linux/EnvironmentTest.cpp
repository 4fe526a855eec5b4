#include <cstdlib>

#include <gtest/gtest.h>
#include <unistd.h>

#include "unit/linux/ChildRunner.h"

namespace vessant::test {
namespace {

constexpr const char* kName = "VESSANT_ENVIRONMENT_TEST";

class Environment : public testing::Test {
 protected:
  Environment() { ::unsetenv(kName); }
  ~Environment() override { ::unsetenv(kName); }

  ChildRunner runner;
};

TEST_F(Environment, AnUnsetVariableIsEmpty) {
  EXPECT_EQ(runner.platform.getEnvironmentVariable(kName), "");
  EXPECT_EQ(runner.platform.getEnvironmentVariable(""), "");
}

TEST_F(Environment, ReadsAVariable) {
  ::setenv(kName, "a=b c", 1);
  EXPECT_EQ(runner.platform.getEnvironmentVariable(kName), "a=b c");
}

TEST_F(Environment, EveryLaterChildSeesASetting) {
  runner.platform.setEnvironmentVariable(kName, "a value");
  EXPECT_EQ(runner.platform.getEnvironmentVariable(kName), "a value");
  for (int i = 0; i < 2; ++i) runner.capture(helper(std::string("env ") + kName));
  EXPECT_EQ(runner.out, "a value\na value\n");
}

TEST_F(Environment, TheLastSettingCounts) {
  runner.platform.setEnvironmentVariable(kName, "first");
  runner.platform.setEnvironmentVariable(kName, "second");
  runner.capture(helper(std::string("env ") + kName));
  EXPECT_EQ(runner.out, "second\n");
}

TEST_F(Environment, AnEmptySettingIsPresent) {
  runner.platform.setEnvironmentVariable(kName, "");
  runner.capture(helper(std::string("env ") + kName));
  EXPECT_EQ(runner.out, "\n");
  EXPECT_NE(std::getenv(kName), nullptr);
}

TEST_F(Environment, KeepsItsOwnCopyOfTheTexts) {
  SString value("kept");
  runner.platform.setEnvironmentVariable(kName, value);
  value.mutableAt(0) = 'X';
  EXPECT_STREQ(std::getenv(kName), "kept");
}

TEST_F(Environment, AnEmptyNameDoesNothing) {
  runner.platform.setEnvironmentVariable("", "value");
  EXPECT_EQ(runner.platform.getEnvironmentVariable(""), "");
  for (char** setting = environ; *setting != nullptr; ++setting) EXPECT_NE(**setting, '=');
}

TEST_F(Environment, ASettingOutlivesThePlatformObject) {
  LinuxPlatformImpl().setEnvironmentVariable(kName, "stays");
  EXPECT_STREQ(std::getenv(kName), "stays");
}

}  // namespace
}  // namespace vessant::test
