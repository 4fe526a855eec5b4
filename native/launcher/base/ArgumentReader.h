// Takes one argument after another off a text, such as a statement of a script.
#pragma once

#include <string_view>

#include "launcher/base/SString.h"

namespace vessant {

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
