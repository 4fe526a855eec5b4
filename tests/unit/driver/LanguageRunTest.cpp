// Runs of the real launcher in every language: what it prints, byte for byte.

#include <string>

#include <gtest/gtest.h>

#include "support/ProcessRunner.h"
#include "unit/driver/DriverRun.h"
#include "unit/driver/MessageFile.h"

namespace vessant::test {
namespace {

/// A script that passes through every stage: nothing is found, nothing is installed.
std::string makeLauncher(DriverRun& run) {
  run.file.launcherStub();
  run.script({"INITIALIZE_UI", "FIND_JVM 1 1", "INSTALL_JVM 1", "ILAUNCH 10 5"})
      .launchScript("exit 0", "DESC: Product\n")
      .jvmFile(10,
               "DESC: Java 17\nJVM_PROPERTIES: a=b\nJVM_EXE: bin/java\nPATH_HINT: /no/such/home\n")
      .jvmInstaller("exit 0\n");
  return run.file.write(run.launcherFile);
}

std::string filled(std::string text, const std::string& argument) {
  const std::size_t place = text.find("%s");
  if (place != std::string::npos) text.replace(place, 2, argument);
  return text;
}

/// What the run prints, in UTF-8.
std::string expectedText(const MessageFile& messages) {
  const auto line = [&](int number, const std::string& argument = "") {
    return "\n" + filled(messages.texts.at(number), argument) + "\n";
  };
  return "Product\n" + line(1, "Product") + line(9) + line(10, "Java 17") + line(3, "Java 17") +
         ".." + messages.texts.at(31) + "\n" + line(8) + "." + line(7, "Product");
}

class LanguageRunTest : public testing::TestWithParam<CatalogRow> {};

TEST_P(LanguageRunTest, PrintsTheStagesAsTheyAreStored) {
  DriverRun run;
  const std::string launcher = makeLauncher(run);
  const ProcessResult result =
      runProcess({.command = {launcher, "-vs:tempdir", run.tree.path("temp")},
                  .environment = {{"LANG", GetParam().language}, {"PATH", ""}}});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, convert(expectedText(readMessageFile(GetParam().language)), "UTF-8",
                                GetParam().charset));
}

INSTANTIATE_TEST_SUITE_P(EveryLanguage, LanguageRunTest, testing::ValuesIn(catalogRows()),
                         [](const auto& row) { return std::string(row.param.language); });

}  // namespace
}  // namespace vessant::test
