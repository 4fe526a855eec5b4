// The exceptions that carry a text, and the system's words for an error.
#include <cerrno>
#include <cstring>

#include <gtest/gtest.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/RunServices.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

TEST(LauncherException, CarriesItsMessage) {
  try {
    throw LauncherException("Unable to read tag file.");
  } catch (const LauncherException& exception) {
    EXPECT_EQ(exception.message(), "Unable to read tag file.");
  }
}

TEST(InstructionsException, CarriesItsMessageAndLineNumber) {
  try {
    throw InstructionsException("message", -3);
  } catch (const InstructionsException& exception) {
    EXPECT_EQ(exception.message(), "message");
    EXPECT_EQ(exception.lineNumber(), -3);
  }
}

TEST(InstructionsException, ACopyHasBoth) {
  const InstructionsException original("message", 7);
  InstructionsException copy(original);
  EXPECT_EQ(copy.message(), "message");
  EXPECT_EQ(copy.lineNumber(), 7);
  copy = InstructionsException("other", 8);
  EXPECT_EQ(copy.message(), "other");
  EXPECT_EQ(copy.lineNumber(), 8);
  EXPECT_EQ(original.message(), "message");
}

TEST(SystemError, IsTheTextOfTheLastError) {
  errno = ENOENT;
  EXPECT_EQ(systemErrorText(), std::strerror(ENOENT));
  EXPECT_EQ(systemErrorText(EACCES), std::strerror(EACCES));
}

TEST(CancelFlag, IsUnsetUntilItIsSet) {
  CancelFlag flag;
  EXPECT_FALSE(flag.isSet());
  flag.set();
  EXPECT_TRUE(flag.isSet());
}

}  // namespace
}  // namespace vessant::test
