// Takes a command line apart into its arguments, for a program that is started without a shell.
#pragma once

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"

namespace vessant {

/// Fills `list` with the arguments of `commandLine` and returns true; it never fails.
///
/// Whitespace separates arguments; double quotes, also in the middle of an argument, keep it. A
/// backslash makes a quote an ordinary character and is itself one before anything else; in the
/// first argument, the program, it never means anything, so that a path keeps its backslashes. A
/// missing closing quote takes the rest of the text. Empty arguments are dropped.
bool splitCommandLine(StringDeque& list, const SString& commandLine);

}  // namespace vessant
