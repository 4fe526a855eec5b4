// Readers of the launcher's inputs: big-endian numbers and raw bytes from a binary stream, lines
// from a stream or a text, and arguments from a statement.
//
// A line ends at a newline, which is not part of it, or at the end of the input. Carriage returns
// are dropped wherever they stand, so that files from other systems read alike, and the line is
// trimmed at both ends.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "launcher/base/SString.h"

namespace vessant {

/// Reads up to `count` bytes into `buffer` and returns how many it stored.
///
/// The end of the file is noticed one byte late: the read that first meets it still stores a byte,
/// 255, and counts it. Kept: installers in the field rely on what this makes of a cut file. A read
/// error is treated as the end of the file.
int readBytes(std::FILE* stream, unsigned char* buffer, int count);

/// An unsigned 32-bit number, most significant byte first.
/// Throws LauncherException(`message`) when fewer than 4 bytes could be read.
std::uint32_t readInt32(std::FILE* stream, const char* message);

/// A signed 16-bit number, most significant byte first; fails as readInt32 does.
std::int16_t readInt16(std::FILE* stream, const char* message);

/// Appends the next line to `line` and trims the result. Returns false when the input ended with
/// this line, at the end of the file or with a read error; the line may hold text all the same.
bool readLine(std::FILE* stream, SString& line);

/// The same over `text` from `position`, which moves past the newline. At or beyond the end nothing
/// is read. Returns false when the text ended with this line.
bool readLine(const SString& text, SString::Size& position, SString& line);

enum class ArgumentForm { Plain, Quoted };

/// Reads one argument into `result`, replacing what it held.
///
/// Plain: the text from `position` up to the next whitespace character, on which `position` is
/// left. Without one the result is the whole text, whatever the position was (callers read this
/// form from the start), and `position` becomes SString::npos.
///
/// Quoted: `position` is just behind an opening double quote. The argument runs to the next quote
/// that is not doubled; a doubled one stands for one quote. `position` moves behind the closing
/// quote, or becomes SString::npos when that was the last character. Throws LauncherException when
/// there is no closing quote; a doubled quote at the very end of the text closes nothing. `offset`
/// is added to the position in that message: it is how much lies in front of `text`.
void nextArgument(SString& result, std::string_view text, SString::Size& position,
                  ArgumentForm form, SString::Size offset = 0);

/// Skips whitespace (that of C's isspace), then reads up to the next. `result` is empty when no
/// word is left. `position` ends one behind the character that ended the word.
void nextWord(SString& result, const SString& text, SString::Size& position);

}  // namespace vessant
