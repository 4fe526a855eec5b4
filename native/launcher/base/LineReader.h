// Lines of text, from a stream or from a text in memory.
//
// A line ends at a newline, which is not part of it, or at the end of the input. Carriage returns
// are dropped wherever they stand, and the line is trimmed at both ends.
#pragma once

#include <cstdio>

#include "launcher/base/SString.h"

namespace vessant {

/// Appends the next line to `line` and trims the result. Returns false when the input ended with
/// this line, at the end of the file or with a read error; the line may hold text all the same.
bool readLine(std::FILE* stream, SString& line);

/// The same over `text` from `position`, which moves past the newline. At or beyond the end nothing
/// is read. Returns false when the text ended with this line.
bool readLine(const SString& text, SString::Size& position, SString& line);

}  // namespace vessant
