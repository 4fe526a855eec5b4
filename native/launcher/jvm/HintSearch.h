// The search for Java homes by what the JVM file and the environment suggest.
#pragma once

#include <memory>

#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/JvmTags.h"

namespace vessant {

/// The three kinds of hints of one JVM file. Each gives the first candidate that verifies, or none,
/// and verifies as JVMVerification does, with its effects.
class HintSearch {
 public:
  /// Both must outlive this.
  HintSearch(JvmTags& jvm, JVMSearch& search) : jvm_(jvm), search_(search) {}

  /// Homes listed in the environment variables that the JVM file names.
  [[nodiscard]] std::unique_ptr<JVMMatch> byPlatformHints();
  /// Homes that the JVM file names itself: absolute ones, and ones next to the launcher.
  [[nodiscard]] std::unique_ptr<JVMMatch> byPathHints();
  /// Homes that the directories of PATH lie in.
  [[nodiscard]] std::unique_ptr<JVMMatch> byPlatformPath();

 private:
  [[nodiscard]] bool begin(const char* kind) const;
  [[nodiscard]] const StringDeque& hints(const char* tag) const;
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyAt(const SString& home);
  [[nodiscard]] std::unique_ptr<JVMMatch> tryHomesIn(const SString& variable);
  [[nodiscard]] std::unique_ptr<JVMMatch> tryAbsolute(const SString& hint);
  [[nodiscard]] std::unique_ptr<JVMMatch> tryRelative(const SString& hint);

  JvmTags& jvm_;
  JVMSearch& search_;
};

/// Fills `list` with the pieces of the variable `name` between its colons, in order, empty pieces
/// included. An unset or empty variable, or an empty name, gives an empty list.
void splitEnvironmentPath(StringDeque& list, const SString& name, const Platform& platform);

}  // namespace vessant
