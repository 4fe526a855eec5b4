// Each system call of the launcher fails once, at every use that a whole run makes of it: the run
// ends with a status of its own, in time, says something when it did not do what it should, and
// leaves nothing behind.

#include <cstring>
#include <fstream>
#include <set>

#include "faults/FaultPlan.h"
#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

enum class Scenario { Launch, Archives, Extract, InstallJvm };

struct Case {
  Scenario scenario;
  std::size_t call;
};

const char* nameOf(Scenario scenario) {
  switch (scenario) {
    case Scenario::Launch:
      return "Launch";
    case Scenario::Archives:
      return "Archives";
    case Scenario::Extract:
      return "Extract";
    case Scenario::InstallJvm:
      return "InstallJvm";
  }
  return "";
}

void PrintTo(const Case& parameter, std::ostream* out) {
  *out << nameOf(parameter.scenario) << ' ' << kFaultyCalls[parameter.call].name;
}

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const Scenario scenario :
       {Scenario::Launch, Scenario::Archives, Scenario::Extract, Scenario::InstallJvm}) {
    for (std::size_t call = 0; call < kFaultyCallCount; ++call) cases.push_back({scenario, call});
  }
  return cases;
}

/// The ways in which a call can end before its work is done.
std::vector<std::string> faultsOf(const std::string& call) {
  const std::set<std::string> interruptible = {"read", "write",   "pread", "pwrite",
                                               "poll", "ppoll",   "send",  "recv",
                                               "open", "waitpid", "waitid"};
  const std::set<std::string> divisible = {"read", "write",  "pread",           "pwrite", "send",
                                           "recv", "fwrite", "copy_file_range", "fread"};
  std::vector<std::string> faults = {"error"};
  if (interruptible.contains(call)) faults.emplace_back("interrupted");
  if (divisible.contains(call)) faults.emplace_back("short");
  return faults;
}

class Faults : public SystemTest, public ::testing::WithParamInterface<Case> {
 protected:
  Faults() {
    file = LauncherFileBuilder().stub(readFile(kFaultyLauncher));
    environment["PATH"] = "/usr/bin:/bin";
    timeLimitSeconds = 20;
    prepare();
    pack();
  }

  void prepare() {
    switch (GetParam().scenario) {
      case Scenario::Launch:
        return addInstaller("\"@JVM_HOME@/@JVM_EXE@\" Main --exit=3");
      case Scenario::Archives:
        addInstaller("\"@JVM_HOME@/@JVM_EXE@\" %CP%() -jar %ARCHIVE%(20) --exit=3");
        return addArchives();
      case Scenario::Extract:
        arguments = {"-vs:extract"};
        addInstaller();
        return addArchives();
      case Scenario::InstallJvm:
        addScript({"INSTALL_JVM 1", "JMP0 @N1@ end", "LAUNCH \"@S1@\" 0", ":end"});
        addLaunchScript("\"@JVM_HOME@/@JVM_EXE@\" %CP%()");
        file.add(kJvmInstaller, 9, "install-java.sh", jvmInstaller());
        return;
    }
  }
  void addArchives() {
    file.add(kApplicationArchive, 20, "app.jar", std::string(200000, 'a'));
    file.add(kClassPathArchive, 21, "lib.jar", "library");
    tree.file("app/setup.cp", "/opt/more.jar\n");
  }
  static std::string jvmInstaller() {
    return "#!/bin/sh\nmkdir -p jre/bin\n"
           "printf '#!/bin/sh\\necho PROGRAM\\nexit 3\\n' > jre/bin/java\n"
           "chmod +x jre/bin/java\ncat > jvm <<'END'\n" +
           jvmFileText("17", "JVM_HOME: jre\n") + "END\n";
  }

  /// How often a run without faults makes the call.
  std::uint32_t usesInWholeRun() {
    const std::string uses = tree.file("uses");
    environment["VESSANT_FAULT_USES"] = uses;
    whole = runLogged(arguments);
    environment.erase("VESSANT_FAULT_USES");
    forgetRun();
    const std::string counters = readFile(uses);
    std::uint32_t number = 0;
    if (counters.size() != kFaultyCallCount * sizeof(number)) {
      ADD_FAILURE() << "the uses were not counted";
      return 0;
    }
    std::memcpy(&number, counters.data() + GetParam().call * sizeof(number), sizeof(number));
    return number;
  }
  void forgetRun() {
    std::filesystem::remove_all(startDirectory);
    std::filesystem::create_directory(startDirectory);
    std::filesystem::remove(logName());
  }
  void check(const std::string& fault);

  std::vector<std::string> arguments;
  ProcessResult whole;
};

void Faults::check(const std::string& fault) {
  SCOPED_TRACE(fault);
  environment["VESSANT_FAULT"] = fault;
  const ProcessResult result = runLogged(arguments);
  EXPECT_TRUE(result.status <= 127 || result.status == 255) << result.status;
  const bool saysSo = result.out != whole.out || !result.err.empty();
  EXPECT_TRUE(result.status == whole.status || saysSo) << "nothing said";
  // What cannot be deleted stays, and the log says so.
  const std::string said = std::filesystem::exists(logName()) ? log() : "";
  for (const auto& left : std::filesystem::directory_iterator(tempRoot)) {
    EXPECT_THAT(said, ::testing::HasSubstr(left.path().string())) << "left behind without a word";
    std::filesystem::remove_all(left.path());
  }
  forgetRun();
}

TEST_P(Faults, EndWellAtEveryUse) {
  const std::string call = kFaultyCalls[GetParam().call].name;
  const std::uint32_t uses = usesInWholeRun();
  RecordProperty("faults", static_cast<int>(uses * faultsOf(call).size()));
  for (std::uint32_t use = 1; use <= uses; ++use) {
    for (const std::string& kind : faultsOf(call)) {
      check(call + ":" + std::to_string(use) + ":" + kind);
    }
  }
}

std::string caseName(const ::testing::TestParamInfo<Case>& parameter) {
  return std::string(nameOf(parameter.param.scenario)) + "_" +
         kFaultyCalls[parameter.param.call].name;
}

INSTANTIATE_TEST_SUITE_P(Calls, Faults, ::testing::ValuesIn(allCases()), caseName);

}  // namespace
}  // namespace vessant::test
