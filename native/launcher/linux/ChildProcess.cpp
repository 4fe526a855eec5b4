#include "launcher/linux/ChildProcess.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/linux/ChildSide.h"
#include "launcher/linux/OutputCollector.h"
#include "launcher/linux/Pipe.h"

namespace vessant {
namespace {

struct OutputPipes {
  Pipe out;
  Pipe err;
};

/// Changes into the directory and returns a descriptor of the one left behind: a descriptor leads
/// back even where the path is too long or no longer there.
UniqueFd enterDirectory(const SString& directory) {
  UniqueFd previous(::open(".", O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (::chdir(directory.cString()) != 0) {
    const SString reason = systemErrorText();
    throw LauncherException("Error setting working directory: " + directory + " " + reason);
  }
  return previous;
}

void openPipes(OutputPipes& pipes) {
  if (pipes.out.open() && pipes.err.open()) return;
  throw LauncherException("Couldn't create either stdout or stderr pipe: " + systemErrorText());
}

[[noreturn]] void runChildSide(const ChildCommand& command, OutputPipes& pipes) {
  ChildOutput output;
  output.redirect = command.captureOutput && command.redirectChildOutput;
  output.stdoutFd = pipes.out.writeEnd.get();
  output.stderrFd = pipes.err.writeEnd.get();
  if (output.redirect) {
    pipes.out.readEnd.reset();
    pipes.err.readEnd.reset();
  }
  runShellInChild(command.command.cString(), output);
}

int waitForAnyChild() {
  int status = 0;
  while (::wait(&status) < 0) {
    if (errno == EINTR) continue;
    throw LauncherException("Error waiting for child process: " + systemErrorText());
  }
  return status;
}

int collectOutput(const ChildCommand& command, pid_t child, OutputPipes& pipes,
                  ProgressSink& progress) {
  pipes.out.writeEnd.reset();
  pipes.err.writeEnd.reset();
  OutputCollector collector(pipes.out.readEnd.get(), command.stdoutText, pipes.err.readEnd.get(),
                            command.stderrText, progress);
  return collector.collect(child);
}

}  // namespace

ChildResult runChildProcess(const ChildCommand& command, ProgressSink& progress) {
  UniqueFd previousDirectory;
  if (!command.workingDirectory.isEmpty()) {
    previousDirectory = enterDirectory(command.workingDirectory);
  }
  OutputPipes pipes;
  if (command.captureOutput) openPipes(pipes);
  const pid_t child = ::fork();
  if (child < 0) throw LauncherException("Error forking new process: " + systemErrorText());
  if (child == 0) runChildSide(command, pipes);
  if (previousDirectory.isOpen()) {
    // A directory that cannot be entered again leaves the launcher where the child runs.
    static_cast<void>(!::fchdir(previousDirectory.get()));
  }
  const int status =
      command.captureOutput ? collectOutput(command, child, pipes, progress) : waitForAnyChild();
  return {.exitCode = WEXITSTATUS(status)};
}

}  // namespace vessant
