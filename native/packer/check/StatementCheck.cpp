#include "packer/check/StatementCheck.h"

#include <cctype>
#include <limits>
#include <memory>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/InstructionActions.h"
#include "launcher/instructions/Interpreter.h"
#include "packer/Text.h"
#include "packer/check/Statement.h"

namespace vessant {
namespace {

/// Does nothing, successfully.
class NoActions : public InstructionActions {
 public:
  void throwIfCanceled() const override {}
  void findJvm(Display /*display*/) override {}
  std::int32_t launchWithEmbeddedJvmFile(std::int32_t /*id*/, std::int16_t /*seconds*/) override {
    return 0;
  }
  void beginProgress() override {}
  void installEmbeddedJvm(std::int32_t /*mode*/) override {}
  std::int32_t launchWithJvmFile(const SString& /*name*/, std::int16_t /*seconds*/) override {
    return 0;
  }
  void verifyEmbeddedJvmFile(Display /*display*/, std::int32_t /*id*/) override {}
  void runEmbeddedLauncher(std::int32_t /*id*/) override {}
  [[nodiscard]] SString getStringVariable(std::int32_t /*number*/) const override { return "1"; }
  void setStringVariable(std::int32_t /*number*/, const SString& /*value*/) override {}
  [[nodiscard]] std::int32_t getNumericVariable(std::int32_t /*number*/) const override {
    return 1;
  }
  void setNumericVariable(std::int32_t /*number*/, std::int32_t /*value*/) override {}
};

/// The launcher's own interpreter has the last word, over actions that do nothing: what only it
/// refuses is told in its words.
std::string whyRefused(const Statement& statement) {
  // A jump goes to wherever its label is; that there is one is checked elsewhere.
  if (jumpTarget(statement)) return "";
  TagFile script;
  script.addValue("INSTRUCTIONS", sstr(statement.text));
  NoActions actions;
  try {
    static_cast<void>(runInstructions(script, actions));
    return "";
  } catch (const InstructionsException& error) {
    return str(trimmed(error.message()));
  } catch (const LauncherException& error) {
    return str(trimmed(error.message()));
  }
}

constexpr std::int64_t kMostSeconds = std::numeric_limits<std::int16_t>::max();
constexpr std::int64_t kLargestNumber = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kSmallestNumber = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kLastInstallMode = 2;

class StatementCheck {
 public:
  StatementCheck(const std::string& file, const Statement& statement, Findings& findings)
      : file_(file), statement_(statement), findings_(findings) {}

  void run();

 private:
  void checkUnknown();
  void checkLabel();
  void checkCommand(const CommandForm& form);
  void checkArguments(const CommandForm& form);
  void checkArgument(std::size_t index, ArgumentKind kind);
  void checkReferences(const std::string& text);
  void checkNumber(std::size_t index, const char* what, std::int64_t least, std::int64_t most,
                   const char* nameBeyond = "number-out-of-range");
  void checkSet();
  void checkText(const std::string& text);
  void checkFileName(const std::string& text);
  void checkSingleQuotes(const std::string& text);
  void checkIgnored();
  void askLauncher();

  void error(const char* name, const std::string& text) {
    findings_.error(file_, statement_.line, name, text);
    found_ = true;
  }

  const std::string& file_;
  const Statement& statement_;
  Findings& findings_;
  bool found_ = false;
};

void StatementCheck::run() {
  if (statement_.verb == Verb::Comment) return;
  if (statement_.verb == Verb::Unknown) return checkUnknown();
  if (statement_.verb == Verb::Label) return checkLabel();
  checkCommand(*findCommandForm(statement_.verb));
}

/// What looks like a comment of another language is called that, and not a misspelt command.
void StatementCheck::checkUnknown() {
  const std::string& word = statement_.word;
  if (word.empty()) return error("empty-statement", "an empty statement ends the run: remove it");
  const bool isComment = word.starts_with("//") || word.starts_with("#") ||
                         word.starts_with("--") || word.starts_with(";") ||
                         word.starts_with("/*") || word == "REM";
  if (isComment) {
    return error("bad-comment",
                 "this is no comment but an unknown command: write \"// \", with a "
                 "blank behind the slashes");
  }
  error("unknown-command",
        "there is no command " + quotedName(word) + suggestion(word, commandNames()));
}

void StatementCheck::checkLabel() {
  if (statement_.text == ":") return error("blank-label", "a label needs a name: \":name\"");
  if (statement_.ignored.empty()) return;
  error("text-behind-label", "a label must stand alone, or no jump finds it: move " +
                                 quotedName(statement_.ignored) + " to a line of its own");
}

void StatementCheck::checkCommand(const CommandForm& form) {
  if (statement_.arguments.size() < form.arguments.size()) {
    // An open quote takes the arguments behind it along.
    if (form.verb == Verb::Launch) checkText(statement_.argument(0));
    if (found_) return;
    const bool isSetWithoutEquals = form.verb == Verb::Set && !statement_.arguments.empty();
    return error("missing-argument",
                 std::string(isSetWithoutEquals ? "there is no \"=\": " : "too few arguments: ") +
                     "write " + form.usage);
  }
  checkArguments(form);
  if (!found_) checkIgnored();
  if (!found_) askLauncher();
}

void StatementCheck::checkArguments(const CommandForm& form) {
  if (form.verb == Verb::Set) return checkSet();
  for (std::size_t i = 0; i < form.arguments.size(); ++i) {
    checkReferences(statement_.arguments[i]);
    checkArgument(i, form.arguments[i]);
  }
}

void StatementCheck::checkArgument(std::size_t index, ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::Switch:
      return checkNumber(index,
                         index == 0 ? "the first argument (show progress)"
                                    : "the second argument (show a failure)",
                         0, 1, "bad-boolean");
    case ArgumentKind::Id:
      return checkNumber(index, "the id", 0, kLargestNumber);
    case ArgumentKind::Seconds:
      return checkNumber(index, "the number of seconds", 0, kMostSeconds);
    case ArgumentKind::Mode:
      return checkNumber(index, "the mode", 0, kLastInstallMode);
    case ArgumentKind::Number:
      return checkNumber(index, "the value", kSmallestNumber, kLargestNumber);
    case ArgumentKind::Text:
      checkText(statement_.arguments[index]);
      return checkFileName(statement_.arguments[index]);
    case ArgumentKind::Label:
    case ArgumentKind::Variable:
      return;
  }
}

void StatementCheck::checkReferences(const std::string& text) {
  const References references = referencesIn(text);
  for (const std::string& specification : references.specifications) {
    std::string reason;
    if (parseVariable(specification, reason)) continue;
    error("unknown-variable",
          "@" + printable(specification) + "@ is no variable: there are S1 to S10 and N1 to N5");
  }
  if (references.hasLoneMark) {
    error("lone-mark", "an \"@\" begins a variable, such as @S1@: write \"@@\" for one \"@\"");
  }
}

void StatementCheck::checkNumber(std::size_t index, const char* what, std::int64_t least,
                                 std::int64_t most, const char* nameBeyond) {
  const std::string text = statement_.argument(index);
  if (text.find('@') != std::string::npos) return;
  const std::optional<std::int64_t> number = wholeNumber(text);
  if (!number) {
    return error("bad-number", std::string(what) + " must be a number, not " + quotedName(text));
  }
  if (*number >= least && *number <= most) return;
  error(nameBeyond, std::string(what) + " must be from " + std::to_string(least) + " to " +
                        std::to_string(most) + ", not " + text);
}

void StatementCheck::checkSet() {
  const std::string& name = statement_.arguments[0];
  const std::string& value = statement_.arguments[1];
  std::string reason;
  const std::optional<VariableSpecification> variable = parseVariable(name, reason);
  if (!variable) {
    const bool hasMarks = name.starts_with('@');
    return error("unknown-variable",
                 hasMarks ? "write the variable to set without its marks: SET S1 = text"
                          : quotedName(name) + " is no variable: there are S1 to S10 and N1 to N5");
  }
  checkReferences(value);
  checkText(value);
  const bool isQuoted = value.starts_with('"');
  if (variable->type == 'N' && !isQuoted)
    checkNumber(1, "the value of a number variable", kSmallestNumber, kLargestNumber);
}

/// A text is cut at its first blank unless it stands in quotes.
void StatementCheck::checkText(const std::string& text) {
  if (text.empty()) return;
  const SString source = sstr(text);
  if (text.front() != '"') {
    const SString::Size blank = source.findFirstOf(kWhitespace);
    if (blank == SString::npos) return checkSingleQuotes(text);
    return error("cut-text", "the text ends at its first blank, so " +
                                 quotedName(str(trimmed(source.substr(blank)))) +
                                 " is lost: put it in double quotes");
  }
  SString value;
  SString::Size position = 1;
  try {
    nextArgument(value, source, position, ArgumentForm::Quoted);
  } catch (const LauncherException&) {
    return error("unclosed-quote", "the double quote is not closed");
  }
  if (position == SString::npos) return;
  error("text-behind-quote", "the text ends at its closing quote, so " +
                                 quotedName(str(trimmed(source.substr(position)))) + " is ignored");
}

/// The launcher would look for a file of this name, in the directory of the user.
void StatementCheck::checkFileName(const std::string& text) {
  std::string reason;
  if (parseVariable(text, reason)) {
    error("not-a-file", quotedName(text) +
                            " is the name of a file here: write the variable as \"@" +
                            printable(text) + "@\"");
  } else if (wholeNumber(text)) {
    error("not-a-file", quotedName(text) +
                            " is the name of a file here: ILAUNCH launches with the JVM file of an "
                            "id");
  }
}

/// Only double quotes quote in a script.
void StatementCheck::checkSingleQuotes(const std::string& text) {
  if (text.size() < 2 || !text.starts_with('\'') || !text.ends_with('\'')) return;
  error("single-quotes", "single quotes are a part of the text: write \"" +
                             printable(text.substr(1, text.size() - 2)) + "\"");
}

/// The launcher ignores it, so it is no error; a comment behind a command is wanted.
void StatementCheck::checkIgnored() {
  if (statement_.ignored.empty() || statement_.ignored.starts_with("//")) return;
  findings_.warning(file_, statement_.line, "ignored-argument",
                    quotedName(statement_.ignored) + " is ignored: write " +
                        findCommandForm(statement_.verb)->usage);
}

void StatementCheck::askLauncher() {
  const std::string reason = whyRefused(statement_);
  if (!reason.empty()) error("refused-statement", reason);
}

}  // namespace

void checkStatements(const std::string& file, const std::vector<Statement>& statements,
                     Findings& findings) {
  for (const Statement& statement : statements) StatementCheck(file, statement, findings).run();
}

}  // namespace vessant
