// A Java home that was verified, and the JVM file it satisfies.
#pragma once

#include <utility>

#include "launcher/base/PtrDeque.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

class JVMMatch {
 public:
  /// `tags` are those of the JVM file; they must outlive the match.
  JVMMatch(SString home, TagFile& tags) : home_(std::move(home)), tags_(&tags) {}
  JVMMatch(const JVMMatch&) = default;
  JVMMatch& operator=(const JVMMatch&) = default;
  virtual ~JVMMatch() = default;

  /// The directory as it was given, without the executable.
  [[nodiscard]] const SString& home() const { return home_; }
  void setHome(const SString& home) { home_ = home; }
  [[nodiscard]] bool foundByRelativeHint() const { return foundByRelativeHint_; }
  void setFoundByRelativeHint() { foundByRelativeHint_ = true; }
  [[nodiscard]] TagFile& tags() const { return *tags_; }

 private:
  SString home_;
  bool foundByRelativeHint_ = false;
  TagFile* tags_;
};

using JVMMatchPtrDE = PtrDE<JVMMatch>;
using JVMMatchPtrDeque = PtrDeque<JVMMatch>;

}  // namespace vessant
