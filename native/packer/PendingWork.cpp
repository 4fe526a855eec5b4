#include "packer/PendingWork.h"

#include <cstdint>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vessant {
namespace {

/// What the signal handler can reach.
std::atomic<PendingWork*> living = nullptr;

// Of what follows, a signal handler may call everything: no memory is allocated.

bool removeTree(int parent, const char* name);

/// Whether it removed anything.
bool removeEntries(int directory) {
  constexpr std::size_t kBufferSize = 4096;
  alignas(dirent64) char buffer[kBufferSize];
  bool removed = false;
  ::lseek(directory, 0, SEEK_SET);
  for (ssize_t count = 0; (count = ::getdents64(directory, buffer, sizeof(buffer))) > 0;) {
    for (ssize_t at = 0; at < count;) {
      const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
      const std::string_view name = entry->d_name;
      at += entry->d_reclen;
      if (name != "." && name != "..") removed |= removeTree(directory, entry->d_name);
    }
  }
  return removed;
}

/// Whether nothing is left of it. What is removed while a directory is read may hide other entries,
/// so that it is read until nothing is found.
bool removeTree(int parent, const char* name) {
  if (::unlinkat(parent, name, 0) == 0) return true;
  const int directory = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (directory >= 0) {
    while (removeEntries(directory)) {
    }
    ::close(directory);
  }
  return ::unlinkat(parent, name, AT_REMOVEDIR) == 0;
}

}  // namespace

PendingWork::PendingWork() {
  living = this;
  struct sigaction action = {};
  action.sa_handler = undoAllAndDie;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], nullptr, &before_[i]);
    if (before_[i].sa_handler != SIG_IGN) ::sigaction(kSignals[i], &action, nullptr);
  }
  action.sa_handler = SIG_IGN;
  ::sigaction(SIGXFSZ, &action, &sizeLimitBefore_);
}

PendingWork::~PendingWork() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    ::sigaction(kSignals[i], &before_[i], nullptr);
  }
  ::sigaction(SIGXFSZ, &sizeLimitBefore_, nullptr);
  living = nullptr;
}

void PendingWork::remember(const char* path) {
  if (living == nullptr) return;
  for (std::atomic<const char*>& place : living.load()->paths_) {
    const char* free = nullptr;
    if (place.compare_exchange_strong(free, path)) return;
  }
}

void PendingWork::forget(const char* path) {
  if (living == nullptr) return;
  for (std::atomic<const char*>& place : living.load()->paths_) {
    const char* expected = path;
    if (place.compare_exchange_strong(expected, nullptr)) return;
  }
}

void PendingWork::rememberTree(const char* path) {
  if (living != nullptr) living.load()->tree_ = path;
}

void PendingWork::rememberChild(pid_t child) {
  if (living != nullptr) living.load()->child_ = child;
}

/// The child goes first, so that it makes nothing new; directories go when the files in them are
/// gone.
void PendingWork::undoAll() const {
  const pid_t child = child_;
  if (child > 0 && ::kill(child, SIGKILL) == 0) ::waitpid(child, nullptr, 0);
  if (tree_ != nullptr) removeTree(AT_FDCWD, tree_);
  for (const auto remove : {::unlink, ::rmdir}) {
    for (const std::atomic<const char*>& place : paths_) {
      const char* path = place.load();
      if (path != nullptr) remove(path);
    }
  }
}

/// The handler was reset before it was called: the signal raised again ends the process.
void PendingWork::undoAllAndDie(int signal) {
  living.load()->undoAll();
  ::raise(signal);
}

}  // namespace vessant
