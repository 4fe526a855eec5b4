// The argument list of a macro function: %NAME%("first", "second").
#pragma once

#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/launch/MacroHandler.h"

namespace vessant {

/// Reads the list that begins at `position` of the text's rest, behind the closing delimiter of the
/// name, and leaves `position` behind the closing parenthesis. Arguments stand in double quotes; a
/// comma behind the last is accepted. When the text ends right behind an argument the list is
/// complete and `position` becomes SString::npos. Throws LauncherException, whose positions count
/// from the beginning of the whole text.
void parseFunctionArguments(const MacroText& text, SString::Size& position, StringDeque& arguments,
                            LogSink& log);

/// Logs the command in its present state and throws LauncherException with the message.
[[noreturn]] void launchScriptError(const SString& command, const SString& message, LogSink& log);

}  // namespace vessant
