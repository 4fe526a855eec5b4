// What verifying and searching Java homes works with: what the run gives, the class that candidates
// are made to run, and what comes of them.
#pragma once

#include <cstdint>
#include <utility>

#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

struct LaunchContext;

/// What the run gives. The driver fills it once.
struct JVMSearchContext {
  LaunchContext& launch;
  /// The Java home that the user named; empty when there is none.
  const SString& javaHome;
  /// True when the installer is spread over several media: a JVM found next to the launcher is then
  /// used from the first medium.
  bool mediaSpanned = false;
  /// Where the whole-disk search and absolute path hints start.
  SString fileSystemRoot = "/";
  /// What a candidate may use up. A Java that has not printed a few lines by then hangs.
  ChildLimits candidateLimits = {.outputBytes = std::uint64_t{64} << 20, .seconds = 60};
};

/// The class that a candidate JVM runs to show what it is. Both texts go into a command line as
/// they stand and bring their own double quotes.
struct VerificationClass {
  SString classPath;
  SString className;
};

/// A Java home that was verified, and the JVM file it satisfies.
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

/// What became of the candidates of a search.
struct CandidateCounts {
  std::int32_t candidates = 0;
  std::int32_t existed = 0;   // there was the file that should be the Java executable
  std::int32_t ran = 0;       // it could be started
  std::int32_t differed = 0;  // it answered, and was not the Java VM looked for
};

/// One search. Every candidate of it is verified with the same class; the context must outlive it.
struct JVMSearch {
  const JVMSearchContext& context;
  VerificationClass verificationClass = {};
  CandidateCounts counts = {};
};

}  // namespace vessant
