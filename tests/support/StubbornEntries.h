// Lets entries be deleted only in vain, which no file system does for root on demand. A test
// program that uses this is linked with -Wl,--wrap=unlinkat, so that every call in it passes
// through here; otherwise nothing changes.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace vessant::test {

/// In effect while it lives. Only one at a time.
class StubbornEntries {
 public:
  StubbornEntries();
  StubbornEntries(const StubbornEntries&) = delete;
  StubbornEntries& operator=(const StubbornEntries&) = delete;
  ~StubbornEntries();

  /// Entries of this name fail with EPERM, in whatever directory they lie.
  void add(const std::string& name) { names_[name] = 0; }
  /// Is called before every deletion, with the entry's name.
  std::function<void(const std::string&)> beforeEach = [](const std::string&) {};

  /// Whether the deletion of an entry is to fail.
  bool refuses(const std::string& name);
  /// How often the deletion of such an entry was tried.
  [[nodiscard]] int attempts(const std::string& name) const { return names_.at(name); }

 private:
  std::map<std::string, int> names_;
};

}  // namespace vessant::test
