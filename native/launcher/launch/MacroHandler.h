// Macros in commands and values. A macro is a name between two equal delimiters; the engine finds
// it and an object that knows the name puts its value in.
#pragma once

#include "launcher/base/SString.h"

namespace vessant {

/// An object that resolves macros.
class MacroHandler {
 public:
  /// Replaces a stretch of `text` that begins at `start`, the opening delimiter, by the macro's
  /// value; `end` is the closing delimiter. The text at `start` must change, or the engine finds
  /// the same macro again. May throw LauncherException.
  virtual void handleMacro(SString& text, char delimiter, SString::Size start,
                           SString::Size& end) = 0;

 protected:
  MacroHandler() = default;
  MacroHandler(const MacroHandler&) = default;
  MacroHandler& operator=(const MacroHandler&) = default;
  ~MacroHandler() = default;  // nobody owns an object by this interface
};

/// A copy of `source` with every macro of one delimiter expanded. A value is scanned again, so the
/// macros in it expand, too. An unpaired delimiter ends the pass. A doubled delimiter that is left
/// in the end becomes a single one. Throws LauncherException when a value leads back to itself.
[[nodiscard]] SString expandMacros(const SString& source, MacroHandler& handler, char delimiter);

/// The text between the delimiters at `start` and `end`.
[[nodiscard]] SString macroName(const SString& text, SString::Size start, SString::Size end);

}  // namespace vessant
