// Macros in commands and values. A macro is a name between two equal delimiters; the engine finds
// it and an object that knows the name puts its value in.
#pragma once

#include <string>
#include <string_view>

#include "launcher/base/Exceptions.h"
#include "launcher/base/SString.h"

namespace vessant {

/// A text while a pass goes through it. What is done lies in front of a gap, the rest behind it, so
/// that a macro is replaced without moving all that follows.
class MacroText {
 public:
  explicit MacroText(const SString& source);

  /// What is not done. While a handler runs it begins with the opening delimiter. Valid until the
  /// text changes.
  [[nodiscard]] std::string_view rest() const;
  /// How many bytes are done: where in the whole text the rest begins.
  [[nodiscard]] SString::Size position() const { return static_cast<SString::Size>(done_); }
  [[nodiscard]] SString whole() const;
  /// Whether the rest begins in the value of a macro, not in what the pass was given.
  [[nodiscard]] bool isInValue() const { return buffer_.size() - rest_ > untouched_; }
  /// How many bytes were taken off and put in where the rest began in a value.
  [[nodiscard]] std::size_t movedInValues() const { return movedInValues_; }

  /// Leaves the first `count` bytes of the rest behind.
  void pass(std::size_t count);
  /// Puts `value` in the place of the first `count` bytes of the rest; SString::npos means all of
  /// it. The rest then begins with the value.
  void replace(std::size_t count, std::string_view value);

 private:
  void widenGap(std::size_t size);

  std::string buffer_;
  std::size_t done_ = 0;   // the gap begins here
  std::size_t rest_ = 0;   // and ends here
  std::size_t untouched_;  // how much at the end is as the pass was given it
  std::size_t movedInValues_ = 0;
};

/// An object that resolves macros.
class MacroHandler {
 public:
  /// Replaces a stretch at the beginning of the text's rest, which is the opening delimiter, by the
  /// macro's value; `end` is where in the rest the closing delimiter stands. A handler that
  /// replaces nothing is given the same macro again. May throw LauncherException.
  virtual void handleMacro(MacroText& text, char delimiter, SString::Size end) = 0;

 protected:
  MacroHandler() = default;
  MacroHandler(const MacroHandler&) = default;
  MacroHandler& operator=(const MacroHandler&) = default;
  ~MacroHandler() = default;  // nobody owns an object by this interface
};

/// A macro whose value leads back to itself.
class EndlessMacro : public LauncherException {
 public:
  explicit EndlessMacro(const SString& source)
      : LauncherException("The expansion of a macro never ends: " + source) {}
};

/// A copy of `source` with every macro of one delimiter expanded. A value is scanned again, so the
/// macros in it expand, too. An unpaired delimiter ends the pass. A doubled delimiter that is left
/// in the end becomes a single one. Throws EndlessMacro.
[[nodiscard]] SString expandMacros(const SString& source, MacroHandler& handler, char delimiter);

/// The name of the macro at the beginning of the rest, whose closing delimiter is at `end`.
[[nodiscard]] SString macroName(const MacroText& text, SString::Size end);

}  // namespace vessant
