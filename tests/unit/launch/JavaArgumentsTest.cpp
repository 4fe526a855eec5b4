// System properties and Java arguments from the side files and the JVM file.

#include "LaunchRoom.h"
#include "launcher/launch/JavaArguments.h"

namespace vessant::test {
namespace {

class JavaArguments : public LaunchRoom {
 protected:
  JavaArguments() {
    setJvmTag("SYSTEM", "-D");
    setJvmTag("SYSTEM_SEPARATOR", "=");
    setJvmTag("JVM_HOME", "/opt/java");
  }

  std::string properties(const std::string& sideFile) {
    tree.file("app/setup.sp", sideFile);
    return str(runtimeSystemProperties(originalLauncherFileName, jvmFile));
  }
  std::string arguments(const std::string& sideFile) {
    tree.file("app/setup.ja", sideFile);
    return str(runtimeJavaArguments(originalLauncherFileName, jvmFile));
  }
};

TEST_F(JavaArguments, MakeASystemPropertyOfTags) {
  EXPECT_EQ(systemProperty("a.b", "c", jvmFile), "-Da.b=c");
  EXPECT_EQ(systemProperty("@JVM_HOME@", "<@JVM_HOME@>", jvmFile), "-D@JVM_HOME@=</opt/java>");
}

TEST_F(JavaArguments, ListSystemProperties) {
  EXPECT_EQ(properties("one=1\n"), "-Done=1");
  EXPECT_EQ(properties("one=1\ntwo=@JVM_HOME@/x"), "-Done=1 -Dtwo=/opt/java/x");
}

TEST_F(JavaArguments, SplitAPropertyAtTheFirstEqualsSign) {
  EXPECT_EQ(properties("a=b=c\n"), "-Da=b=c");
  EXPECT_EQ(properties("a=\n=b\n=\n"), "-Da= -D=b -D=");
}

TEST_F(JavaArguments, TrimNeitherNameNorValueOfAProperty) {
  EXPECT_EQ(properties("  a = b \n"), "-Da = b");
}

TEST_F(JavaArguments, PassOverLinesWithoutAnEqualsSign) {
  EXPECT_EQ(properties("a\n\nb=1\nc d\n"), "-Db=1");
  EXPECT_EQ(properties("none\n"), "");
}

TEST_F(JavaArguments, AreNoneWithoutSideFiles) {
  EXPECT_EQ(runtimeSystemProperties(originalLauncherFileName, jvmFile), "");
  EXPECT_EQ(runtimeJavaArguments(originalLauncherFileName, jvmFile), "");
}

TEST_F(JavaArguments, MayEndInCarriageReturnAndLineBreak) {
  EXPECT_EQ(properties("a=1\r\nb=2\r\n"), "-Da=1 -Db=2");
  EXPECT_EQ(arguments("-Xa\r\n\r\n-Xb\r\n"), "-Xa -Xb");
}

TEST_F(JavaArguments, JoinTheLinesThatAreLeft) {
  EXPECT_EQ(arguments("-Xmx64m -ea\n\n  -Xss1m  \n"), "-Xmx64m -ea -Xss1m");
  EXPECT_EQ(arguments("@ABSENT@\n-cp @JVM_HOME@/lib\n@ABSENT@"), "-cp /opt/java/lib");
}

TEST_F(JavaArguments, EndInTheRequiredOnes) {
  setJvmTag("REQ_JAVA_ARGS", "-server @JVM_HOME@");
  EXPECT_EQ(arguments("-Xmx64m"), "-Xmx64m -server @JVM_HOME@");
}

TEST_F(JavaArguments, PutABlankInFrontOfTheRequiredOnesAlone) {
  setJvmTag("REQ_JAVA_ARGS", "-Xmx64m");
  EXPECT_EQ(runtimeJavaArguments(originalLauncherFileName, jvmFile), " -Xmx64m");
}

TEST_F(JavaArguments, LogNothing) {
  properties("x\na=b\n");
  arguments("-ea\n");
  EXPECT_TRUE(run.log.lines().empty());
}

}  // namespace
}  // namespace vessant::test
