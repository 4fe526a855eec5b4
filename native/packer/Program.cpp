#include "packer/Program.h"

#include <array>
#include <cerrno>
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

pid_t start(const std::vector<std::string>& command, int out) {
  std::vector<char*> arguments;
  // The interface is older than const; nothing is written through these pointers.
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const FileActions actions(out);
  pid_t child = 0;
  const int error =
      ::posix_spawn(&child, arguments.front(), actions.get(), nullptr, arguments.data(), environ);
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
  const pid_t child = start(command, writeEnd.get());
  writeEnd.reset();
  std::string out = readAll(readEnd.get());
  return {.status = statusOf(child), .out = std::move(out)};
}

}  // namespace vessant
