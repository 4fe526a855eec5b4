#include "launcher/linux/CancelSignals.h"

#include <fcntl.h>
#include <unistd.h>

namespace vessant {
namespace {

// A signal handler can reach nothing but a global.
CancelFlag* cancelFlag = nullptr;

void onCancel(int /*signal*/) {
  if (cancelFlag != nullptr) cancelFlag->set();
}

void onClosedPipe(int /*signal*/) {}

struct sigaction actionFor(int signal) {
  struct sigaction action = {};
  ::sigemptyset(&action.sa_mask);
  if (signal == SIGPIPE) {
    action.sa_handler = onClosedPipe;
    action.sa_flags = SA_RESTART;
  } else {
    action.sa_handler = onCancel;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  }
  return action;
}

}  // namespace

CancelSignals::CancelSignals(CancelFlag& flag) {
  cancelFlag = &flag;
  for (int i = 0; i < kSignalCount; ++i) {
    const struct sigaction action = actionFor(kSignals[i]);
    ::sigaction(kSignals[i], nullptr, &previous_[i]);
    if (previous_[i].sa_handler != SIG_IGN) ::sigaction(kSignals[i], &action, nullptr);
  }
}

CancelSignals::~CancelSignals() {
  for (int i = 0; i < kSignalCount; ++i) ::sigaction(kSignals[i], &previous_[i], nullptr);
  cancelFlag = nullptr;
}

void prepareProcess() {
  int fd = ::open("/dev/null", O_RDWR);
  while (fd >= 0 && fd <= STDERR_FILENO) fd = ::dup(fd);
  if (fd > STDERR_FILENO) ::close(fd);
  std::signal(SIGCHLD, SIG_DFL);
}

}  // namespace vessant
