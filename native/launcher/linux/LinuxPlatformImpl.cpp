#include "launcher/linux/LinuxPlatformImpl.h"

#include <cstdio>
#include <cstdlib>
#include <forward_list>
#include <string>
#include <vector>

#include <unistd.h>

#include "launcher/base/SignalWait.h"
#include "launcher/base/StringDeque.h"
#include "launcher/linux/CancelSignals.h"
#include "launcher/linux/ChildProcess.h"
#include "launcher/linux/CommandLine.h"
#include "launcher/linux/DiskSpace.h"

namespace vessant {
namespace {

/// Becomes the command. Returns only when that failed.
void replaceProcess(const SString& command) {
  StringDeque arguments;
  splitCommandLine(arguments, command);
  if (arguments.isEmpty()) return;
  std::vector<char*> vector;
  for (const SString& argument : arguments) {
    vector.push_back(const_cast<char*>(argument.cString()));  // execvp changes none of them
  }
  vector.push_back(nullptr);
  ::execvp(vector.front(), vector.data());
}

}  // namespace

ChildResult LinuxPlatformImpl::executeCommand(const ChildCommand& command, ProgressSink& progress) {
  // What is still in the buffer belongs ahead of the child's output, and must not be written twice.
  const CancelFlag never;
  const CancelSignals* signals = CancelSignals::current();
  flushUnlessInterrupted(stdout, signals == nullptr ? never : signals->flag());
  if (command.replaceProcess) {
    replaceProcess(command.command);
    return {};
  }
  return runChildProcess(command, progress);
}

SString LinuxPlatformImpl::getEnvironmentVariable(const SString& name) const {
  return std::getenv(name.cString());
}

void LinuxPlatformImpl::setEnvironmentVariable(const SString& name, const SString& value) {
  if (name.isEmpty()) return;
  // Kept within reach of leak checkers, and never destroyed: the environment is read to the end.
  static auto& settings = *new std::forward_list<std::string>;
  ::putenv(settings.emplace_front((name + "=" + value).view()).data());
}

bool LinuxPlatformImpl::hasFreeSpace(const SString& directory, std::uint32_t byteCount,
                                     std::uint32_t fileCount) const {
  return fitsOnDisk(byteCount, fileCount, queryDiskSpace(directory));
}

bool LinuxPlatformImpl::isNoExec(const SString& path) const {
  return isMountedNoExec(path);
}

}  // namespace vessant
