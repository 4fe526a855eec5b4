// The search of the whole disk on the real one: a walk over everything that this machine has.

#include <cstdlib>

#include "system/SystemTest.h"

namespace vessant::test {
namespace {

/// The tests' trees lie in the default temporary directory, which the search leaves out: here they
/// lie in the other one.
struct TreeInVarTmp {
  TreeInVarTmp() { ::setenv("TMPDIR", "/var/tmp", 1); }
};

struct WholeDisk : TreeInVarTmp, SystemTest {};

TEST_F(WholeDisk, HoldsTheOneJavaThatIsLookedFor) {
  // Only this test has such an executable, so no other Java of the machine is started.
  const std::string home = javaHome("disk/jdk", "17.0.1");
  const std::filesystem::path root = tree.root();
  const std::string executable = root.filename().string() + "/disk/jdk/bin/java";
  const std::string homeOfAll = root.parent_path().string();
  file.add(kJvmFile, kJvmFileId, "java.jvm",
           "DESC: any\nJVM_PROPERTIES: java.version=17.0.1\nCLASSPATH: \"-cp \"\n"
           "JVM_EXE: " +
               executable + "\n");
  file.add(kVerificationClass, kVerificationClassId, "verify.jar", "verification class");
  const ProcessResult result = run({"-vs:in", tree.file("input.tag", "ACTION: SEARCH_ALL\n")});
  EXPECT_EQ(maskTempNames(result.out), "1\n" + homeOfAll + "\n" + tempRoot + "/vsj\n");
  EXPECT_EQ(result.status, 0);
  for (const std::string& name : tree.list("temp")) {
    std::filesystem::remove(tempRoot + "/" + name);
  }
}

}  // namespace
}  // namespace vessant::test
