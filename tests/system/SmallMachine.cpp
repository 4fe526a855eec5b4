#include "system/SmallMachine.h"

#include <sstream>

#include <unistd.h>

#include "support/BuildPaths.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kEnter = "/usr/sbin/chroot";

/// What the loader would load for a program; nothing for a static one.
std::vector<std::string> librariesOf(const std::string& program) {
  std::istringstream words(runProcess({.command = {"/usr/bin/ldd", program}}).out);
  std::vector<std::string> libraries;
  for (std::string word; words >> word;) {
    if (word.starts_with("/") && fs::exists(word)) libraries.push_back(word);
  }
  return libraries;
}

}  // namespace

void SmallMachine::SetUp() {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make a file system of its own";
  launcher = tree.path(inTree("/app/setup.bin"));
  for (const char* directory : {"/app", "/tmp", "/var/tmp", "/dev"}) tree.dir(inTree(directory));
  tree.file(inTree("/dev/null"));
  const std::string shell = "/bin/sh";
  copy(shell);
  for (const std::string& program : {shell, std::string(kLauncher)}) {
    for (const std::string& library : librariesOf(program)) copy(library);
  }
#ifdef __SANITIZE_ADDRESS__
  // The sanitizer finds its options and the program's name in /proc, where this machine has nothing
  // else: it cannot look for leaks, and its notes go into a file. Errors show in the exit status.
  const std::string_view options = "ASAN_OPTIONS=detect_leaks=0:log_path=/asan-log";
  tree.file(inTree("/proc/self/environ"), std::string(options) + '\0');
  tree.link(inTree("/proc/self/exe"), "/app/setup.bin");
#endif
  const ProcessResult trial = runCommandInside({"/bin/sh", "-c", "echo ready"});
  if (trial.out != "ready\n") GTEST_SKIP() << "no file system of its own here: " << trial.err;
}

void SmallMachine::TearDown() {
  SystemTest::TearDown();
  if (!fs::exists(tree.path(inTree("/tmp")))) return;
  EXPECT_THAT(tree.list(inTree("/tmp")), ::testing::IsEmpty()) << "/tmp is not empty";
}

void SmallMachine::addJava(const std::string& home, const std::string& version) {
  javaHome(inTree(home), version);
}

std::string SmallMachine::read(const std::string& path) const {
  return readFile(tree.path(inTree(path)));
}

ProcessResult SmallMachine::runInside(const std::vector<std::string>& arguments) {
  pack();
  std::vector<std::string> command = {"/app/setup.bin"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return runCommandInside(command);
}

ProcessResult SmallMachine::runInsideLogged(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = {"-vs:log", "/setup.log"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return runInside(all);
}

ProcessResult SmallMachine::runCommandInside(const std::vector<std::string>& command) {
  std::vector<std::string> entering = {kEnter, tree.path("machine")};
  entering.insert(entering.end(), command.begin(), command.end());
  return runCommand(entering);
}

void SmallMachine::copy(const std::string& path) {
  const std::string target = tree.path(inTree(path));
  fs::create_directories(fs::path(target).parent_path());
  fs::copy_file(path, target, fs::copy_options::overwrite_existing);
}

}  // namespace vessant::test
