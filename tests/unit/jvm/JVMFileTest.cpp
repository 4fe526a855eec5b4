#include <gtest/gtest.h>

#include "launcher/jvm/JVMFile.h"
#include "unit/jvm/JvmFixture.h"

namespace vessant::test {
namespace {

class JVMFileTest : public testing::Test {
 protected:
  SString expand(const std::string& jvmFile, const std::string& source) {
    return expandJVMMacros(fixture.jvmFile(jvmFile), text(source));
  }

  JvmFixture fixture;
};

TEST_F(JVMFileTest, ReadsItsTags) {
  const JVMFile& file = fixture.jvmFile("DESC: Java 17\nJVM_EXE: bin/java\nVENDOR: any\n");
  EXPECT_EQ(file.description(), "Java 17");
  EXPECT_EQ(file.executable(), "bin/java");
  EXPECT_EQ(file.tag("VENDOR"), "any");
  EXPECT_EQ(str(file.fileName()), fixture.tree.path("tags/file.tag"));
}

TEST_F(JVMFileTest, AnAbsentTagIsEmpty) {
  const JVMFile& file = fixture.jvmFile("");
  EXPECT_EQ(file.description(), "");
  EXPECT_EQ(file.executable(), "");
  EXPECT_EQ(file.tag("ANY"), "");
  EXPECT_FALSE(file.searchAll());
}

TEST_F(JVMFileTest, ReadsTheFirstOfSeveralValues) {
  const JVMFile& file = fixture.jvmFile(
      "DESC:\none\ntwo\n/:\nJVM_EXE:\njre/bin/java\nbin/java\n/:\nSEARCH_ALL:\n1\n0\n/:\n");
  EXPECT_EQ(file.description(), "one");
  EXPECT_EQ(file.executable(), "jre/bin/java");
  EXPECT_TRUE(file.searchAll());
}

TEST_F(JVMFileTest, MaySearchTheWholeDiskForAnyNumberButZero) {
  const std::map<std::string, bool> cases = {{"1", true},       {"-3", true},    {"+2", true},
                                             {"7 times", true}, {"32768", true}, {"0", false},
                                             {"yes", false},    {"true", false}, {"\"\"", false},
                                             {"65536", false},  {"0x1", false}};
  for (const auto& [value, expected] : cases) {
    EXPECT_EQ(fixture.jvmFile("SEARCH_ALL: " + value + "\n").searchAll(), expected) << value;
  }
}

TEST_F(JVMFileTest, PutsTagsInThePlaceOfMacros) {
  EXPECT_EQ(expand("A: one\nB: two\n", "x@A@y@B@z@A@"), "xoneytwozone");
  EXPECT_EQ(expand("A:\nfirst\nsecond\n/:\n", "@A@"), "first");
}

TEST_F(JVMFileTest, AnUnknownMacroIsEmpty) {
  EXPECT_EQ(expand("A: one\n", "[@B@][@a@]"), "[][]");
}

TEST_F(JVMFileTest, ExpandsTheMacrosInAValue) {
  EXPECT_EQ(expand("A: <@B@>\nB: two\n", "@A@"), "<two>");
}

TEST_F(JVMFileTest, DropsOneBackslashAtTheEndOfTheHomeAlone) {
  EXPECT_EQ(expand("JVM_HOME: C:\\jdk\\\n", "@JVM_HOME@"), "C:\\jdk");
  EXPECT_EQ(expand("JVM_HOME: C:\\jdk\\\\\n", "@JVM_HOME@"), "C:\\jdk\\");
  EXPECT_EQ(expand("JVM_HOME: \\\n", "@JVM_HOME@"), "");
  EXPECT_EQ(expand("JVM_HOME: C:\\jdk\n", "@JVM_HOME@"), "C:\\jdk");
  EXPECT_EQ(expand("OTHER: C:\\jdk\\\n", "@OTHER@"), "C:\\jdk\\");
}

TEST_F(JVMFileTest, KeepsASlashAtTheEndOfTheHome) {
  EXPECT_EQ(expand("JVM_HOME: /usr/jdk/\n", "@JVM_HOME@"), "/usr/jdk/");
}

TEST_F(JVMFileTest, TheTagItselfKeepsItsBackslash) {
  JVMFile& file = fixture.jvmFile("JVM_HOME: C:\\jdk\\\n");
  EXPECT_EQ(expandJVMMacros(file, "@JVM_HOME@"), "C:\\jdk");
  EXPECT_EQ(file.tag("JVM_HOME"), "C:\\jdk\\");
}

}  // namespace
}  // namespace vessant::test
