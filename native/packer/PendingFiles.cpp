#include "packer/PendingFiles.h"

#include <unistd.h>

namespace vessant {
namespace {

/// What the signal handler can reach.
std::atomic<PendingFiles*> living = nullptr;

}  // namespace

PendingFiles::PendingFiles() {
  living = this;
  struct sigaction action = {};
  action.sa_handler = removeAllAndDie;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) ::sigaction(kSignals[i], &action, nullptr);
  }
  action.sa_handler = SIG_IGN;
  ::sigaction(SIGXFSZ, &action, &sizeLimitBefore_);
}

PendingFiles::~PendingFiles() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], &before_[i], nullptr);
  }
  ::sigaction(SIGXFSZ, &sizeLimitBefore_, nullptr);
  living = nullptr;
}

void PendingFiles::remember(const char* path) {
  if (living == nullptr) return;
  for (std::atomic<const char*>& place : living.load()->paths_) {
    const char* free = nullptr;
    if (place.compare_exchange_strong(free, path)) return;
  }
}

void PendingFiles::forget(const char* path) {
  if (living == nullptr) return;
  for (std::atomic<const char*>& place : living.load()->paths_) {
    const char* expected = path;
    if (place.compare_exchange_strong(expected, nullptr)) return;
  }
}

/// Directories go when the files in them are gone. The handler was reset before it was called: the
/// signal raised again ends the process.
void PendingFiles::removeAllAndDie(int signal) {
  for (const auto remove : {::unlink, ::rmdir}) {
    for (const std::atomic<const char*>& place : living.load()->paths_) {
      const char* path = place.load();
      if (path != nullptr) remove(path);
    }
  }
  ::raise(signal);
}

}  // namespace vessant
