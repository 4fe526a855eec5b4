#include "launcher/linux/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdint>

#include <fcntl.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Handles.h"
#include "launcher/linux/ChildWatch.h"
#include "launcher/linux/OrphanAdoption.h"
#include "launcher/linux/Shell.h"
#include "launcher/linux/SignalRelay.h"

namespace vessant {
namespace {

/// A descriptor for a stream that is missing. Without /dev it is one of a directory that can be
/// neither read nor written: the stream answers like a closed one, but its place is taken.
int openPlaceholder() {
  const int fd = ::open("/dev/null", O_RDWR);
  return fd >= 0 ? fd : ::open("/", O_PATH);
}

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

/// An input without a byte: a machine without /dev has one, too.
UniqueFd openEmptyInput() {
  UniqueFd input(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  Pipe pipe;
  if (!input.isOpen() && pipe.open()) input = std::move(pipe.readEnd);
  return input;
}

pid_t start(const ChildCommand& command, const OutputPipes& pipes, const UniqueFd& startError) {
  const UniqueFd input = command.emptyInput ? openEmptyInput() : UniqueFd();
  ShellSetup setup;
  setup.standardInput = input.get();
  setup.redirect = command.captureOutput && command.redirectChildOutput;
  setup.standardOutput = pipes.out.writeEnd.get();
  setup.standardError = pipes.err.writeEnd.get();
  setup.ownGroup = command.limits.isSet();
  setup.startError = startError.get();
  const pid_t child = startShell(shellText(command.command), setup);
  if (child < 0) throw LauncherException("Error forking new process: " + systemErrorText());
  return child;
}

/// What the copied process has counted when it could not become the shell; 0 when it could, and
/// where there is nothing to count with.
int errorIn(const UniqueFd& counter) {
  std::uint64_t count = 0;
  return ::read(counter.get(), &count, sizeof(count)) > 0 ? static_cast<int>(count) : 0;
}

}  // namespace

void prepareProcess() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // The system gives the lowest free number, which is this one. Nothing is opened to find out
    // whether it is missing: that would be noticed in the shortest run.
    if (::fcntl(stream, F_GETFD) < 0) static_cast<void>(openPlaceholder());
  }
  // Who ignores it when he starts the launcher has the system throw away how children ended.
  std::signal(SIGCHLD, SIG_DFL);
}

bool Pipe::open() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  readEnd.reset(ends[0]);
  writeEnd.reset(ends[1]);
  return true;
}

ChildResult runChildProcess(const ChildCommand& command, ProgressSink& progress) {
  const OrphanAdoption adoption;
  // Before the pipes are there: what it starts would hold their ends.
  SignalRelay relay(command.limits.isSet());
  UniqueFd previousDirectory;
  if (!command.workingDirectory.isEmpty()) {
    previousDirectory = enterDirectory(command.workingDirectory);
  }
  OutputPipes pipes;
  if (command.captureOutput) openPipes(pipes);
  const UniqueFd startError(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  const pid_t child = start(command, pipes, startError);
  if (previousDirectory.isOpen()) {
    // A directory that cannot be entered again leaves the launcher where the child runs.
    static_cast<void>(!::fchdir(previousDirectory.get()));
  }
  ChildWatch watch(child, command, relay, progress);
  if (command.captureOutput) {
    // An end of its own would keep the launcher waiting for more.
    pipes.out.writeEnd.reset();
    pipes.err.writeEnd.reset();
    watch.collectFrom(pipes.out.readEnd.get(), pipes.err.readEnd.get());
  }
  ChildResult result = watch.run();
  result.startError = errorIn(startError);
  if (result.end != ChildEnd::Exited) adoption.killAll();
  return result;
}

}  // namespace vessant
