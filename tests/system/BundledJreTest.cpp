// The example that carries its own Java runtime, on a machine that offers no JVM at all. Skipped
// where no JDK can make the runtime.

#include <cstdlib>

#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

using ::testing::HasSubstr;

std::string pathVariable() {
  const char* path = std::getenv("PATH");
  return path == nullptr ? "/usr/bin:/bin" : path;
}

bool haveJlink() {
  const ProcessResult result = runProcess({.command = {"/bin/sh", "-c", "command -v jlink"},
                                           .environment = {{"PATH", pathVariable()}}});
  return result.status == 0;
}

TEST(BundledJre, IsUnpackedUsedAndTakenAwayWhereThereIsNoJava) {
  if (!haveJlink()) GTEST_SKIP() << "no jlink on PATH";
  TempTree tree;
  const std::string temp = tree.dir("temp");
  const std::string installer = tree.path("installer");
  const std::string example = std::string(kSourceDir) + "/examples/bundled-jre/";
  const ProcessResult made =
      runProcess({.command = {"/bin/sh", example + "make-installer", kBinaryDir, installer},
                  .environment = {{"PATH", pathVariable()}, {"TMPDIR", tree.dir("work")}}});
  ASSERT_EQ(made.status, 0) << made.out << made.err;

  const ProcessResult result =
      runProcess({.command = {installer, "-vs:tempdir", temp, "two words", "--exit=3"},
                  .environment = {{"PATH", "/nonexistent"}},
                  .directory = tree.dir("elsewhere")});
  EXPECT_EQ(result.status, 3) << result.err;
  EXPECT_THAT(result.out, HasSubstr("\nPreparing Java(tm) Virtual Machine...\n"));
  EXPECT_THAT(result.out, HasSubstr("\nHello from Java "));
  EXPECT_THAT(result.out, HasSubstr("\n  home:       " + temp + "/vsj"));
  EXPECT_THAT(result.out, HasSubstr("\n  argument:   [two words]\n"));
  EXPECT_TRUE(tree.list("temp").empty());
  EXPECT_TRUE(tree.list("elsewhere").empty());
}

}  // namespace
}  // namespace vessant::test
