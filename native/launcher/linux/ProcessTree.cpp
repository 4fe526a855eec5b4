#include "launcher/linux/ProcessTree.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <dirent.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Handles.h"

namespace vessant {
namespace {

/// The beginning of struct pidfd_info of linux/pidfd.h, which older headers lack.
struct PidfdInfo {
  std::uint64_t mask;
  std::uint64_t cgroup;
  std::uint32_t process;
  std::uint32_t threadGroup;
  std::uint32_t parent;
  std::uint32_t rest[9];
};
constexpr unsigned long kPidfdGetInfo = _IOWR(0xFF, 11, PidfdInfo);
constexpr std::uint64_t kPidfdInfoPid = 1;
constexpr long kPidfdOpen = 434;  // the same on every architecture
constexpr pid_t kMostProcesses = 4194304;

/// The whole text of a file of /proc; empty when it cannot be read.
std::string readSmallFile(const std::string& path) {
  const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  std::string text;
  char chunk[4096];
  ssize_t count = 0;
  while (file.isOpen() && (count = ::read(file.get(), chunk, sizeof(chunk))) > 0) {
    text.append(chunk, static_cast<std::size_t>(count));
  }
  return text;
}

std::string procPath(pid_t process, const char* name) {
  return "/proc/" + std::to_string(process) + "/" + name;
}

std::vector<pid_t> numbersIn(const std::string& text) {
  std::vector<pid_t> numbers;
  const char* position = text.c_str();
  char* end = nullptr;
  for (long number = std::strtol(position, &end, 10); end != position;
       number = std::strtol(position, &end, 10)) {
    numbers.push_back(static_cast<pid_t>(number));
    position = end;
  }
  return numbers;
}

/// The fourth field of "stat". The second one is a name that may hold anything, up to the last ")".
pid_t parentInProc(pid_t process) {
  const std::string status = readSmallFile(procPath(process, "stat"));
  const std::size_t name = status.rfind(") ");
  if (name == std::string::npos || status.size() < name + 5) return -1;
  return std::atoi(status.c_str() + name + 4);
}

std::vector<pid_t> searchProc(pid_t parent) {
  std::vector<pid_t> children;
  DIR* directory = ::opendir("/proc");
  if (directory == nullptr) return children;
  while (const dirent* entry = ::readdir(directory)) {
    const pid_t process = std::atoi(entry->d_name);
    if (process > 0 && parentInProc(process) == parent) children.push_back(process);
  }
  ::closedir(directory);
  return children;
}

pid_t parentOf(pid_t process) {
  const UniqueFd handle(static_cast<int>(::syscall(kPidfdOpen, process, 0)));
  PidfdInfo info = {};
  info.mask = kPidfdInfoPid;
  if (!handle.isOpen() || ::ioctl(handle.get(), kPidfdGetInfo, &info) != 0) return -1;
  return static_cast<pid_t>(info.parent);
}

/// The number that the system gives to a process now.
pid_t nextProcess() {
  const pid_t process = ::fork();
  if (process == 0) ::_exit(0);
  while (process > 0 && ::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
  }
  return process;
}

/// Without /proc: the numbers are given in order and start again from the lowest, so that the
/// children of a process lie between its own and the next one.
std::vector<pid_t> probe(pid_t parent) {
  std::vector<pid_t> children;
  const pid_t next = nextProcess();
  const bool canTell = next > 0 && parentOf(::getpid()) >= 0;
  for (pid_t process = parent + 1; canTell && process != next; ++process) {
    if (process > kMostProcesses) process = 1;
    if (parentOf(process) == parent) children.push_back(process);
  }
  return children;
}

bool isSameProgram(pid_t a, pid_t b) {
  const std::string arguments = readSmallFile(procPath(a, "cmdline"));
  return !arguments.empty() && arguments == readSmallFile(procPath(b, "cmdline"));
}

}  // namespace

std::vector<pid_t> childrenOf(pid_t parent) {
  if (::access("/proc/self", F_OK) != 0) return probe(parent);
  const std::string thread = "task/" + std::to_string(parent) + "/children";
  const std::string path = procPath(parent, thread.c_str());
  // Some systems are built without this file.
  if (::access("/proc/thread-self/children", F_OK) != 0) return searchProc(parent);
  return numbersIn(readSmallFile(path));
}

std::vector<pid_t> descendantsOf(pid_t ancestor) {
  std::vector<pid_t> processes = childrenOf(ancestor);
  for (std::size_t i = 0; i < processes.size(); ++i) {
    const std::vector<pid_t> children = childrenOf(processes[i]);
    processes.insert(processes.end(), children.begin(), children.end());
  }
  return processes;
}

std::vector<pid_t> programsOf(pid_t shell) {
  std::vector<pid_t> programs;
  for (const pid_t child : childrenOf(shell)) {
    const std::vector<pid_t> parts =
        isSameProgram(child, shell) ? programsOf(child) : std::vector<pid_t>();
    if (parts.empty()) {
      programs.push_back(child);
    } else {
      programs.insert(programs.end(), parts.begin(), parts.end());
    }
  }
  return programs;
}

}  // namespace vessant
