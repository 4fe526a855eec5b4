// What verifying and searching Java homes works with: what the run gives, and the class that
// candidates are made to run.
#pragma once

#include "launcher/base/SString.h"

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
};

/// The class that a candidate JVM runs to show what it is. Both texts go into a command line as
/// they stand and bring their own double quotes.
struct VerificationClass {
  SString classPath;
  SString className;
};

/// One search. Every candidate of it is verified with the same class; the context must outlive it.
struct JVMSearch {
  const JVMSearchContext& context;
  VerificationClass verificationClass = {};
};

}  // namespace vessant
