#include "packer/Program.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Handles.h"
#include "packer/Text.h"

namespace vessant {
namespace {

constexpr int kSignalled = 128;

/// As a shell does, while it waits for a program.
class IgnoredInterrupt {
 public:
  IgnoredInterrupt() {
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    ::sigaction(SIGINT, &ignore, &before_);
  }
  IgnoredInterrupt(const IgnoredInterrupt&) = delete;
  IgnoredInterrupt& operator=(const IgnoredInterrupt&) = delete;
  ~IgnoredInterrupt() { ::sigaction(SIGINT, &before_, nullptr); }

  [[nodiscard]] bool wasIgnored() const { return before_.sa_handler == SIG_IGN; }

 private:
  struct sigaction before_ = {};
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

/// The signals that the child gets its own handling of.
class Attributes {
 public:
  explicit Attributes(bool keepsInterrupt) {
    posix_spawnattr_init(&attributes_);
    if (!keepsInterrupt) return;
    sigset_t interrupt;
    sigemptyset(&interrupt);
    sigaddset(&interrupt, SIGINT);
    posix_spawnattr_setsigdefault(&attributes_, &interrupt);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }

  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_ = {};
};

pid_t start(const std::vector<std::string>& command, int out, bool keepsInterrupt) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  // The interface is older than const; nothing is written through these pointers.
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const FileActions actions(out);
  const Attributes attributes(keepsInterrupt);
  pid_t child = 0;
  const int error = ::posix_spawn(&child, arguments.front(), actions.get(), attributes.get(),
                                  arguments.data(), environ);
  if (error != 0) throw failure(command.front() + ": " + std::strerror(error));
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
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ProgramResult runProgram(const std::vector<std::string>& command) {
  int ends[2] = {};
  if (::pipe2(ends, O_CLOEXEC) != 0) throw failure(std::string("pipe: ") + std::strerror(errno));
  const UniqueFd readEnd(ends[0]);
  UniqueFd writeEnd(ends[1]);
  const IgnoredInterrupt interrupt;
  const pid_t child = start(command, writeEnd.get(), !interrupt.wasIgnored());
  writeEnd.reset();
  std::string out = readAll(readEnd.get());
  return {.status = statusOf(child), .out = std::move(out)};
}

}  // namespace vessant
