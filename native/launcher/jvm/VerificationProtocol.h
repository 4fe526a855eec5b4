// What a candidate is asked and what it answers.
//
// The verification class prints a magic line and then, line by line, the values of the system
// properties that it was given by name. Whatever else a Java VM prints stands in front.
#pragma once

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

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

}  // namespace vessant
