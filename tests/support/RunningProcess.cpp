#include "support/RunningProcess.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vessant::test {
namespace {

constexpr int kMillisecondsPerSecond = 1000;

void makePipe(int ends[2]) {
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
}

[[noreturn]] void becomeProgram(const ProcessRequest& request, int in, int out, bool terminal) {
  std::vector<std::string> settings;
  for (const auto& [name, value] : request.environment) settings.push_back(name + "=" + value);
  std::vector<char*> environment;
  for (std::string& setting : settings) environment.push_back(setting.data());
  environment.push_back(nullptr);
  std::vector<char*> arguments;
  for (const std::string& text : request.command) {
    arguments.push_back(const_cast<char*>(text.c_str()));
  }
  arguments.push_back(nullptr);
  ::setsid();
  if (terminal) ::ioctl(in, TIOCSCTTY, 0);
  const bool ready = ::dup2(in, 0) == 0 && ::dup2(out, 1) == 1 && ::dup2(out, 2) == 2 &&
                     (request.directory.empty() || ::chdir(request.directory.c_str()) == 0);
  if (ready) ::execve(arguments.front(), arguments.data(), environment.data());
  ::_exit(127);
}

}  // namespace

RunningProcess::RunningProcess(const ProcessRequest& request, Console console)
    : full_(console == Console::FullPipe), timeLimitSeconds_(request.timeLimitSeconds) {
  if (console == Console::Terminal) {
    openTerminal();
  } else {
    openPipe(full_);
  }
  process_ = ::fork();
  if (process_ < 0) throw std::runtime_error("no process");
  if (process_ == 0) becomeProgram(request, childIn_, childOut_, console == Console::Terminal);
  ::close(childIn_);
  if (childOut_ != childIn_) ::close(childOut_);
}

RunningProcess::~RunningProcess() {
  if (!ended_) ::kill(-process_, SIGKILL);
  if (!ended_) ::waitpid(process_, nullptr, 0);
  ::close(in_);
  if (out_ != in_) ::close(out_);
}

void RunningProcess::openPipe(bool full) {
  int in[2];
  int out[2];
  makePipe(in);
  makePipe(out);
  childIn_ = in[0];
  in_ = in[1];
  out_ = out[0];
  childOut_ = out[1];
  if (!full) return;
  const int flags = ::fcntl(childOut_, F_GETFL);
  ::fcntl(childOut_, F_SETFL, flags | O_NONBLOCK);
  const std::string filling(4096, '-');
  while (::write(childOut_, filling.data(), filling.size()) > 0) {
  }
  ::fcntl(childOut_, F_SETFL, flags);
}

void RunningProcess::openTerminal() {
  in_ = out_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (in_ < 0 || ::grantpt(in_) != 0 || ::unlockpt(in_) != 0) {
    throw std::runtime_error("no terminal");
  }
  childIn_ = childOut_ = ::open(::ptsname(in_), O_RDWR | O_NOCTTY | O_CLOEXEC);
}

bool RunningProcess::readUntil(const std::string& text) {
  while (output_.find(text) == std::string::npos) {
    pollfd descriptor = {out_, POLLIN, 0};
    const int limit = static_cast<int>(timeLimitSeconds_) * kMillisecondsPerSecond;
    if (::poll(&descriptor, 1, limit) <= 0) return false;
    char chunk[4096];
    const ssize_t count = ::read(out_, chunk, sizeof(chunk));
    if (count <= 0) return false;
    output_.append(chunk, static_cast<std::size_t>(count));
  }
  return true;
}

void RunningProcess::type(const std::string& text) {
  if (::write(in_, text.data(), text.size()) < 0) throw std::runtime_error("nobody reads");
}

void RunningProcess::send(int signal) const {
  ::kill(process_, signal);
}

void RunningProcess::sendToGroup(int signal) const {
  ::kill(-process_, signal);
}

int RunningProcess::wait() {
  if (!full_) readUntil("\xFF no such text");
  const int end = static_cast<int>(::syscall(SYS_pidfd_open, process_, 0));
  pollfd descriptor = {end, POLLIN, 0};
  const int limit = static_cast<int>(timeLimitSeconds_) * kMillisecondsPerSecond;
  if (::poll(&descriptor, 1, limit) <= 0) {
    ::kill(-process_, SIGKILL);
    ADD_FAILURE() << "the program was killed: it had not ended after " << timeLimitSeconds_
                  << " seconds; it had shown: " << output_;
  }
  ::close(end);
  int status = 0;
  ::waitpid(process_, &status, 0);
  ended_ = true;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return status_;
}

}  // namespace vessant::test
