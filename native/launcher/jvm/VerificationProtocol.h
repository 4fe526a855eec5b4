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

/// Whether `output` holds the magic line and, after it, the expected values. Output that ends early
/// is accepted. Kept: older verification classes print fewer lines. Output without the magic line
/// is logged as an error.
[[nodiscard]] bool matchesExpected(const SString& output, const StringPairPtrDeque& expected,
                                   LogSink& log);

}  // namespace vessant
