// Verification: a candidate is what the Java found there says it is.
//
// It is made to run the verification class, which prints a magic line and then, line by line, the
// values of the system properties that it was given by name. Whatever else a Java VM prints stands
// in front.
#pragma once

#include <memory>
#include <string_view>

#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/jvm/JVMSearch.h"
#include "launcher/launch/JvmTags.h"

namespace vessant {

/// The line behind which a verification class prints the values. Every one that an installer brings
/// has it, so it never changes; Verify.java has it, too.
inline constexpr std::string_view kMagicLine = "1739021872";

/// False, with a warning, for a JVM file that names no property and so can verify nothing.
[[nodiscard]] bool namesProperties(const JvmTags& jvm, const JVMSearch& search);

/// The properties that a JVM file requires, with the values that they must have. A setting without
/// "=" is logged and left out.
void readExpectedProperties(const TagFile& tags, StringPairPtrDeque& expected, LogSink& log);

/// What a candidate answered.
struct JVMAnswer {
  enum class Kind { Expected, Different, NoMagicLine };

  Kind kind = Kind::Expected;
  /// The first property that differs, on one line: "java.version is 1.8.0_292, wanted 17...".
  SString difference = {};
};

/// Looks for the magic line in `output` and, after it, for the expected values. Output that ends
/// early is as expected. Kept: older verification classes print fewer lines. Output without the
/// magic line is logged as an error.
[[nodiscard]] JVMAnswer readAnswer(const SString& output, const StringPairPtrDeque& expected,
                                   LogSink& log);

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
  [[nodiscard]] bool canBeTried(const SString& home);
  [[nodiscard]] SString reasonToRefuse(const ChildResult& end, const JVMAnswer& answer);
  [[nodiscard]] SString commandFor(const SString& home, const StringPairPtrDeque& expected) const;

  JvmTags& jvm_;
  JVMSearch& search_;
};

}  // namespace vessant
