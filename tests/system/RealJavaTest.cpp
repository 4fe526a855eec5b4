// The example's installer on a real JDK of the machine. Skipped where there is none.

#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>

#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

using ::testing::EndsWith;
using ::testing::StartsWith;

const std::string kShare = std::string(kBinaryDir) + "/share/";
const std::string kExamples = std::string(kSourceDir) + "/examples/";
const std::string kAnyJava = kExamples + "jvm/java-8-or-newer.jvm";

struct Jdk {
  std::string home;
  std::string version;
};

/// The version that a Java home tells in its "release" file; empty when it tells none.
std::string versionOf(const fs::path& home) {
  std::ifstream release(home / "release");
  const std::string begin = "JAVA_VERSION=\"";
  for (std::string line; std::getline(release, line);) {
    if (line.starts_with(begin)) return line.substr(begin.size(), line.rfind('"') - begin.size());
  }
  return "";
}

std::optional<Jdk> jdkAt(const fs::path& home) {
  const std::string version = versionOf(home);
  if (version.empty() || !fs::exists(home / "bin/java")) return {};
  return Jdk{home.string(), version};
}

/// The JDK of the PATH, or one of those in the place where distributions put them.
std::optional<Jdk> findJdk() {
  std::vector<fs::path> homes;
  std::istringstream path(std::getenv("PATH") == nullptr ? "" : std::getenv("PATH"));
  std::error_code missing;
  for (std::string entry; std::getline(path, entry, ':');) {
    const fs::path java = fs::canonical(entry + "/java", missing);
    if (!missing) homes.push_back(java.parent_path().parent_path());
  }
  for (const fs::directory_entry& entry : fs::directory_iterator("/usr/lib/jvm", missing)) {
    if (!entry.is_symlink()) homes.push_back(entry.path());
  }
  for (const fs::path& home : homes) {
    const std::optional<Jdk> jdk = jdkAt(home);
    if (jdk) return jdk;
  }
  return {};
}

struct RealJava : SystemTest {
  void SetUp() override {
    const std::optional<Jdk> found = findJdk();
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

  Jdk jdk;
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
