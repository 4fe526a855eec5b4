// One statement of an instruction script, taken apart as the launcher's commands take it apart, but
// without running it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "launcher/instructions/StatementArguments.h"

namespace vessant {

/// The number, when `text` is one and nothing else; it may be longer than any type holds, and is
/// then the largest or smallest that there is.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(const std::string& text);

/// What a statement does. A label and a comment are verbs, too: the script counts them as
/// statements.
enum class Verb {
  Label,
  Comment,
  FindJvm,
  Goto,
  ILaunch,
  InitializeUi,
  InstallJvm,
  Jmp0,
  Launch,
  Set,
  Verify,
  ExecuteLauncher,
  Unknown,
};

/// What the launcher would make of the line, before it looks at any variable.
struct Statement {
  Verb verb = Verb::Unknown;
  /// Of the script's text.
  int line = 0;
  /// The whole statement.
  std::string text;
  /// Its first word.
  std::string word;
  /// The arguments as written, those that are missing left out. SET has the variable and the value;
  /// a text in quotes keeps them.
  std::vector<std::string> arguments;
  /// What stands behind the arguments and is ignored.
  std::string ignored;

  /// An argument, or the empty text when it is missing.
  [[nodiscard]] std::string argument(std::size_t index) const {
    return index < arguments.size() ? arguments[index] : std::string();
  }
};

/// Never fails: what cannot be taken apart has the verb Unknown or too few arguments. A text whose
/// quote is not closed is one argument up to the end.
[[nodiscard]] Statement readStatement(const std::string& text, int line);

/// What an argument means.
enum class ArgumentKind { Switch, Id, Seconds, Mode, Number, Text, Label, Variable };

/// One row of the table of commands. It is the launcher's table, told for authors.
struct CommandForm {
  Verb verb;
  const char* name;
  std::span<const ArgumentKind> arguments;
  /// How the command is written.
  const char* usage;
};

/// The form of a command, or null for a verb that is none.
[[nodiscard]] const CommandForm* findCommandForm(Verb verb);
/// The words of all commands.
[[nodiscard]] std::vector<std::string> commandNames();

/// The label that GOTO or JMP0 names, or nothing for other statements.
[[nodiscard]] std::optional<std::string> jumpTarget(const Statement& statement);

/// The variables that a text refers to, one after another: @S1@. `@@` is no reference.
struct References {
  std::vector<std::string> specifications;
  /// An "@" without a second one.
  bool hasLoneMark = false;
};
[[nodiscard]] References referencesIn(const std::string& text);
/// The variable, or nothing, with the launcher's reason, when there is no such variable.
[[nodiscard]] std::optional<VariableSpecification> parseVariable(const std::string& text,
                                                                 std::string& reason);

}  // namespace vessant
