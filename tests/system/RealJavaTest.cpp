// The example's installer on a real JDK of the machine. Skipped where there is none.

#include "support/BuildPaths.h"
#include "system/RealJdk.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using ::testing::EndsWith;
using ::testing::StartsWith;

const std::string kShare = std::string(kBinaryDir) + "/share/";
const std::string kExamples = std::string(kSourceDir) + "/examples/";
const std::string kAnyJava = kExamples + "jvm/java-8-or-newer.jvm";

struct RealJava : SystemTest {
  void SetUp() override {
    const std::optional<RealJdk> found = findRealJdk();
    if (!found) GTEST_SKIP() << "no JDK on this machine";
    if (!fs::exists(kShare + "hello.jar")) GTEST_SKIP() << "the example's jars are not built";
    jdk = *found;
    environment["JAVA_HOME"] = "/no/such/home:" + jdk.home;
    environment["PATH"] = "/usr/bin:/bin";
    addVerifier();
    file.add(kJvmFile, 3, "java.jvm", readFile(kAnyJava));
  }

  void addVerifier() {
    file.add(kVerificationClass, 5, "verify.jar", readFile(kShare + "verify.jar"));
  }
  void addHello() {
    file.add(kScript, 1, "hello.instructions", readFile(kExamples + "hello/hello.instructions"));
    file.add(kLaunchScript, 2, "hello.launch", readFile(kExamples + "hello/hello.launch"));
    file.add(kClassPathArchive, 4, "hello.jar", readFile(kShare + "hello.jar"));
  }
  /// What Hello prints when it gets these arguments; the class path's place in it is open.
  [[nodiscard]] std::string helloOutput(const std::string& arguments) const {
    return "Hello from Java " + jdk.version + "\n  home:       " + jdk.home +
           "\n  JAVA_HOME:  " + jdk.home + "\n  class path: :" + tempRoot +
           "/vsj/hello.jar:\n  property:   hello.greeting = welcome\n"
           "  property:   hello.launcher = " +
           launcher + "\n" + arguments;
  }

  RealJdk jdk;
};

TEST_F(RealJava, RunsTheExampleWithItsArguments) {
  addHello();
  const ProcessResult result =
      run({"two words", "say \"hi\"", "it's", "", "-Dnot.an=option", "--exit=7"});
  EXPECT_EQ(result.status, 7);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(result.out, StartsWith("Hello from Vessant\n\nInitializing Hello from Vessant...\n"));
  EXPECT_THAT(maskTempNames(result.out),
              EndsWith("\nRunning Hello from Vessant...\n" +
                       helloOutput("  argument:   [two words]\n  argument:   [say \"hi\"]\n"
                                   "  argument:   [it's]\n  argument:   []\n"
                                   "  argument:   [-Dnot.an=option]\n  argument:   [--exit=7]\n")));
}

TEST_F(RealJava, RunsTheExampleFromItsExtractedFiles) {
  addHello();
  EXPECT_THAT(run({"-vs:extract", "-vs:silent"}).status, 0);
  const ProcessResult result = run({"-vs:in", "input.tag", "--exit=3"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.err, "");
  EXPECT_THAT(maskTempNames(result.out), EndsWith(helloOutput("  argument:   [--exit=3]\n")));
}

TEST_F(RealJava, IsRefusedByAJvmFileForAnother) {
  const std::string own = tree.file("own.jvm", readFile(kAnyJava));
  const std::string other = tree.file("other.jvm", jvmFileText("0.9"));
  const auto verify = [&](const std::string& jvmFile) {
    return run(
        {"-vs:in", tree.file("input.tag", "ACTION: VERIFY_JVM\n" + tag("VERIFY_JVM_FILE", jvmFile) +
                                              tag("VERIFY_JVM_HOME", jdk.home))});
  };
  EXPECT_THAT(verify(own), Ended(0, "1\n"));
  EXPECT_THAT(verify(other), Ended(0, "0\n"));
}

}  // namespace
}  // namespace vessant::test
