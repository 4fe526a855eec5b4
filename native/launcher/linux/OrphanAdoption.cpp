#include "launcher/linux/OrphanAdoption.h"

#include <cerrno>
#include <csignal>

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "launcher/linux/ProcessTree.h"

namespace vessant {
namespace {

constexpr pid_t kFirstProcess = 1;
// Who forks faster than it is killed, or cannot be killed, is not waited for.
constexpr int kMostRounds = 100;
constexpr int kPauseMilliseconds = 10;

/// Whether there is a child, one that has ended and was not waited for included.
bool hasChildren() {
  siginfo_t info = {};
  return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

void adoptOrphans(bool adopt) {
  // An old kernel that cannot do this leaves them to the system.
  static_cast<void>(::prctl(PR_SET_CHILD_SUBREAPER, adopt ? 1 : 0, 0, 0, 0));
}

}  // namespace

OrphanAdoption::OrphanAdoption() : hasOthers_(::getpid() == kFirstProcess || hasChildren()) {
  adoptOrphans(true);
}

OrphanAdoption::~OrphanAdoption() {
  adoptOrphans(false);
}

void OrphanAdoption::killAll() const {
  if (hasOthers_) return;
  for (int round = 0; round < kMostRounds && hasChildren(); ++round) {
    if (round > 0) ::poll(nullptr, 0, kPauseMilliseconds);
    for (const pid_t process : descendantsOf(::getpid())) {
      static_cast<void>(::kill(process, SIGKILL));
    }
    while (::waitpid(-1, nullptr, WNOHANG) > 0) {
    }
  }
}

}  // namespace vessant
