// The functions that a launch command may call as %NAME%("argument", ...), and their argument
// lists.
#pragma once

#include <cstdint>

#include "launcher/base/Deque.h"
#include "launcher/base/RunServices.h"
#include "launcher/base/SString.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchContext.h"
#include "launcher/launch/MacroHandler.h"

namespace vessant {

/// What a function works on.
struct MacroCall {
  LaunchContext& context;
  JvmTags& jvm;
  const StringDeque& arguments;
  /// The launch script's own class path entry, expanded; only for a function that uses it.
  const SString& archive;
  bool includeArchives;
};

/// A function as a command calls it: how many arguments it takes, and the error text for any other
/// number of them.
struct MacroFunction {
  static constexpr std::int32_t kAnyCount = -1;

  const char* name;
  std::int32_t fewestArguments;
  std::int32_t mostArguments;  // or kAnyCount
  const char* countMessage;
  bool usesArchive;
  /// The value that replaces the call. May throw LauncherException.
  SString (*evaluate)(const MacroCall& call);

  [[nodiscard]] bool accepts(std::int32_t count) const {
    return mostArguments == kAnyCount || (fewestArguments <= count && count <= mostArguments);
  }
};

/// The function of that name, or null.
[[nodiscard]] const MacroFunction* findMacroFunction(const SString& name);

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
