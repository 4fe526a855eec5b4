#include "support/ProcessRunner.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/TempTree.h"

namespace vessant::test {
namespace {

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

std::vector<std::string> settingsOf(const std::map<std::string, std::string>& environment) {
  std::vector<std::string> settings;
  for (const auto& [name, value] : environment) settings.push_back(name + "=" + value);
  return settings;
}

[[noreturn]] void becomeProgram(const ProcessRequest& request, const std::string& input, int out,
                                int err) {
  const std::vector<std::string> settings = settingsOf(request.environment);
  std::vector<char*> arguments = pointersTo(request.command);
  std::vector<char*> environment = pointersTo(settings);
  const int in = ::open(input.c_str(), O_RDONLY);
  const bool ready = ::dup2(in, 0) == 0 && ::dup2(out, 1) == 1 && ::dup2(err, 2) == 2 &&
                     (request.directory.empty() || ::chdir(request.directory.c_str()) == 0);
  if (ready) {
    ::setpgid(0, 0);
    ::execve(arguments.front(), arguments.data(), environment.data());
  }
  ::_exit(127);
}

/// Reads until both streams have ended, or the time has passed.
bool collect(int out, int err, std::chrono::steady_clock::time_point end, ProcessResult& result) {
  std::array<pollfd, 2> fds = {{{out, POLLIN, 0}, {err, POLLIN, 0}}};
  const std::array<std::string*, 2> texts = {&result.out, &result.err};
  while (fds[0].fd >= 0 || fds[1].fd >= 0) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    ::poll(fds.data(), fds.size(), static_cast<int>(left.count()));
    for (std::size_t i = 0; i < fds.size(); ++i) {
      if (fds[i].fd < 0 || fds[i].revents == 0) continue;
      std::array<char, 65536> chunk;
      const ssize_t count = ::read(fds[i].fd, chunk.data(), chunk.size());
      if (count > 0) {
        texts[i]->append(chunk.data(), static_cast<std::size_t>(count));
      } else {
        fds[i].fd = -1;
      }
    }
  }
  return true;
}

/// Waits until the process has ended or the time has passed: one may close its streams and go on.
bool waitForEnd(pid_t process, std::chrono::steady_clock::time_point end) {
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
  const int handle = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
  pollfd descriptor = {handle, POLLIN, 0};
  const int ready = ::poll(&descriptor, 1, std::max(0, static_cast<int>(left.count())));
  ::close(handle);
  return ready > 0;
}

}  // namespace

ProcessResult runProcess(const ProcessRequest& request) {
  TempTree tree;
  const std::string input = tree.file("input", request.input);
  int out[2];
  int err[2];
  if (::pipe2(out, O_CLOEXEC) != 0 || ::pipe2(err, O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipes");
  }
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) becomeProgram(request, input, out[1], err[1]);
  ::close(out[1]);
  ::close(err[1]);
  ProcessResult result;
  const auto end =
      std::chrono::steady_clock::now() + std::chrono::seconds(request.timeLimitSeconds);
  if (!collect(out[0], err[0], end, result) || !waitForEnd(child, end)) {
    // No milder signal: programs may catch it. The whole group: what the program has started may
    // hold the streams.
    ::kill(-child, SIGKILL);
    ADD_FAILURE() << request.command.front() << " was killed: it had not ended after "
                  << request.timeLimitSeconds << " seconds";
  }
  ::close(out[0]);
  ::close(err[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

}  // namespace vessant::test
