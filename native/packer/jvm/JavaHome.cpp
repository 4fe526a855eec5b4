#include "packer/jvm/JavaHome.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <sstream>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Handles.h"
#include "launcher/jvm/JVMVerification.h"
#include "packer/PendingWork.h"
#include "packer/Session.h"
#include "packer/Text.h"

namespace vessant {
namespace {

constexpr int kSignalled = 128;

/// Holds back the signals that interrupt.
class BlockedInterrupts {
 public:
  BlockedInterrupts() {
    sigset_t interrupts;
    sigemptyset(&interrupts);
    for (const int signal : PendingWork::kSignals) sigaddset(&interrupts, signal);
    ::pthread_sigmask(SIG_BLOCK, &interrupts, &before_);
  }
  BlockedInterrupts(const BlockedInterrupts&) = delete;
  BlockedInterrupts& operator=(const BlockedInterrupts&) = delete;
  ~BlockedInterrupts() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  [[nodiscard]] const sigset_t& before() const { return before_; }

 private:
  sigset_t before_ = {};
};

/// What the child's descriptors become between fork and exec.
class FileActions {
 public:
  explicit FileActions(int out) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, out, STDOUT_FILENO);
  }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_ = {};
};

/// The signals that are blocked in the child.
class Attributes {
 public:
  explicit Attributes(const sigset_t& blocked) {
    posix_spawnattr_init(&attributes_);
    posix_spawnattr_setsigmask(&attributes_, &blocked);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }

  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_ = {};
};

/// An interrupt finds the child registered as soon as there is one.
pid_t start(const std::vector<std::string>& command, int out) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  // The interface is older than const; nothing is written through these pointers.
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const FileActions actions(out);
  const BlockedInterrupts blocked;
  const Attributes attributes(blocked.before());
  pid_t child = 0;
  const int error = ::posix_spawn(&child, arguments.front(), actions.get(), attributes.get(),
                                  arguments.data(), environ);
  if (error != 0) throw failure(command.front() + ": " + std::strerror(error));
  PendingWork::rememberChild(child);
  return child;
}

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 1 << 16> chunk = {};
  for (;;) {
    const ssize_t count = ::read(descriptor, chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return text;
    text.append(chunk.data(), static_cast<std::size_t>(count));
  }
}

int statusOf(pid_t child) {
  siginfo_t ended = {};
  while (::waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT) < 0 &&
         errno == EINTR) {
  }
  PendingWork::forgetChild();
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

namespace fs = std::filesystem;

constexpr const char* kVerifyJar = "verify.jar";
/// What the shell or the launcher's macros would read; a second number sign, too.
constexpr std::string_view kUnfitForCommand = "%@\"$`\\\n\r";

constexpr const char* kNames[] = {"java.specification.version", "java.version", "java.vendor",
                                  "os.arch", "java.home"};
constexpr std::size_t kNameCount = std::size(kNames);

std::vector<std::string> answersIn(const std::string& output) {
  std::vector<std::string> answers;
  std::istringstream stream(output);
  bool begun = false;
  for (std::string line; std::getline(stream, line);) {
    if (begun) answers.push_back(line);
    begun = begun || line == kMagicLine;
  }
  return answers;
}

std::string javaOf(const std::string& home) {
  std::string java = (fs::path(home) / "bin/java").string();
  if (::access(java.c_str(), X_OK) == 0 && !fs::is_directory(java)) return java;
  throw failure(home + ": is no Java home: it has no program bin/java");
}

fs::path realPath(const std::string& path) {
  std::error_code unknown;
  const fs::path real = fs::canonical(path, unknown);
  return unknown ? fs::path(path) : real;
}

int featureOf(const std::string& version) {
  const std::string_view number = version;
  return parseJavaVersion(number.starts_with("1.") ? number.substr(2) : number);
}

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& command) {
  int ends[2] = {};
  if (::pipe2(ends, O_CLOEXEC) != 0) throw failure(std::string("pipe: ") + std::strerror(errno));
  const UniqueFd readEnd(ends[0]);
  UniqueFd writeEnd(ends[1]);
  const pid_t child = start(command, writeEnd.get());
  writeEnd.reset();
  std::string out = readAll(readEnd.get());
  return {.status = statusOf(child), .out = std::move(out)};
}

std::string installedVerifyJar(const std::string& program) {
  std::string path = installedFile(program, kVerifyJar);
  if (path.empty()) throw failure(std::string(kVerifyJar) + ": was not installed with vspack");
  return path;
}

JavaFacts askJava(const std::string& home, const std::string& verifyJar) {
  const std::string path = fs::absolute(home).lexically_normal().string();
  std::vector<std::string> command = {javaOf(path), "-cp", verifyJar, "Verify"};
  command.insert(command.end(), std::begin(kNames), std::end(kNames));
  const ProgramResult result = runProgram(command);
  const std::vector<std::string> answers = answersIn(result.out);
  if (result.status != 0 || answers.size() < kNameCount) {
    throw failure(home + ": its Java does not say what it is (it ended with status " +
                  std::to_string(result.status) + ")");
  }
  return {.home = path,
          .feature = featureOf(answers[0]),
          .version = answers[1],
          .vendor = answers[2],
          .architecture = answers[3],
          .realHome = realPath(answers[4]).string()};
}

KnownJava knownJava(const JavaFacts& facts) {
  const std::string number = std::to_string(facts.feature);
  KnownJava java{.description = "Java " + number + " of " + facts.vendor,
                 .properties = {{"vessant.java.min." + number, "true"},
                                {"vessant.java.max." + number, "true"}},
                 .home = facts.home};
  if (!facts.vendor.empty()) java.properties.emplace_back("java.vendor", facts.vendor);
  java.properties.emplace_back("os.arch", facts.architecture);
  return java;
}

void checkHomeForLauncher(const std::string& home) {
  std::size_t position = home.find_first_of(kUnfitForCommand);
  if (position == std::string::npos) {
    const std::size_t first = home.find('#');
    if (first == std::string::npos) return;
    position = home.find('#', first + 1);
  }
  if (position == std::string::npos) return;
  throw failure(quotedName(home) + ": no launcher can verify a Java in a path with " +
                quotedName(home.substr(position, 1)));
}

}  // namespace vessant
