// Verification: a candidate is what the Java found there says it is.
#pragma once

#include <memory>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/jvm/JVMMatch.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/jvm/VerificationProtocol.h"
#include "launcher/launch/JvmTags.h"

namespace vessant {

/// False, with a warning, for a JVM file that names no property and so can verify nothing.
[[nodiscard]] bool namesProperties(const JvmTags& jvm, const JVMSearch& search);

/// Verifies candidate homes for one JVM file.
class JVMVerification {
 public:
  /// Both must outlive this.
  JVMVerification(JvmTags& jvm, JVMSearch& search) : jvm_(jvm), search_(search) {}

  /// Looks whether there is a Java at `home` and, when there is, runs it. Returns the match, or
  /// none. A bad candidate is logged and counted, not thrown; what keeps any command from being run
  /// is thrown as LauncherException, and so is the end of a cancelled run.
  [[nodiscard]] std::unique_ptr<JVMMatch> verifyAt(const SString& home);

  /// Runs the Java at `home` and compares what it reports with what the JVM file asks for. Leaves
  /// the absolute path of the home in the JVM file's tag JVM_HOME, whatever comes of it. The
  /// reason of a refusal is logged.
  [[nodiscard]] bool run(const SString& home);

 private:
  [[nodiscard]] bool canBeTried(const SString& home) const;
  [[nodiscard]] SString reasonToRefuse(const ChildResult& end, const JVMAnswer& answer);
  [[nodiscard]] SString commandFor(const SString& home, const StringPairPtrDeque& expected) const;

  JvmTags& jvm_;
  JVMSearch& search_;
};

}  // namespace vessant
