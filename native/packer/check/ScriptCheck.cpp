#include "packer/check/ScriptCheck.h"

#include <algorithm>
#include <map>
#include <set>

#include "packer/Text.h"
#include "packer/check/ScriptFlow.h"
#include "packer/check/StatementCheck.h"
#include "packer/check/TagCheck.h"

namespace vessant {
namespace {

constexpr int kHomeOrFile = 1;
constexpr int kJvmFile = 2;

/// The string variables that are set anywhere, and by which commands.
class Setters {
 public:
  explicit Setters(const std::vector<Statement>& statements) {
    for (const Statement& statement : statements) add(statement);
  }

  [[nodiscard]] bool areSetting(int number) const { return verbs_.contains(number); }
  [[nodiscard]] bool isSetBy(int number, Verb verb) const {
    const auto found = verbs_.find(number);
    return found != verbs_.end() && found->second.contains(verb);
  }

 private:
  void add(const Statement& statement) {
    const Verb verb = statement.verb;
    if (verb == Verb::FindJvm) verbs_[kJvmFile].insert(verb);
    if (verb == Verb::FindJvm || verb == Verb::InstallJvm || verb == Verb::Verify) {
      verbs_[kHomeOrFile].insert(verb);
    }
    if (verb != Verb::Set) return;
    std::string reason;
    const auto variable = parseVariable(statement.argument(0), reason);
    if (variable && variable->type == 'S') verbs_[variable->number].insert(verb);
  }

  std::map<int, std::set<Verb>> verbs_;
};

/// The numbers of the string variables that a text puts in.
std::vector<int> stringsIn(const std::string& text) {
  std::vector<int> numbers;
  for (const std::string& name : referencesIn(text).specifications) {
    std::string reason;
    const auto variable = parseVariable(name, reason);
    if (variable && variable->type == 'S') numbers.push_back(variable->number);
  }
  return numbers;
}

/// The same for all arguments of a statement but the variable that it sets.
std::vector<int> stringsUsedIn(const Statement& statement) {
  std::vector<int> numbers;
  for (std::size_t i = statement.verb == Verb::Set ? 1 : 0; i < statement.arguments.size(); ++i) {
    const std::vector<int> more = stringsIn(statement.arguments[i]);
    numbers.insert(numbers.end(), more.begin(), more.end());
  }
  return numbers;
}

class VariableCheck {
 public:
  VariableCheck(const std::string& file, const std::vector<Statement>& statements,
                Findings& findings)
      : file_(file), setters_(statements), findings_(findings) {}

  void check(const Statement& statement) {
    for (std::size_t i = 0; i < statement.arguments.size(); ++i) {
      const bool isAssigned = statement.verb == Verb::Set && i == 0;
      if (!isAssigned) checkText(statement, i);
    }
  }

 private:
  void checkText(const Statement& statement, std::size_t index) {
    for (const int number : stringsIn(statement.arguments[index])) {
      checkUse(statement, number, index);
    }
  }

  void checkUse(const Statement& statement, int number, std::size_t index) {
    if (!setters_.areSetting(number)) {
      findings_.error(file_, statement.line, "unset-variable",
                      "nothing sets S" + std::to_string(number) +
                          ", so it is empty here: set it first, or use the variable that "
                          "FIND_JVM (S2) or INSTALL_JVM (S1) sets");
      return;
    }
    const bool isFileName = statement.verb == Verb::Launch && index == 0;
    const bool isHome = number == kHomeOrFile && !setters_.isSetBy(number, Verb::InstallJvm) &&
                        !setters_.isSetBy(number, Verb::Set);
    if (!isFileName || !isHome) return;
    findings_.error(file_, statement.line, "home-for-jvm-file",
                    "S1 is the Java home that was found; the JVM file to launch with is S2");
  }

  const std::string& file_;
  Setters setters_;
  Findings& findings_;
};

void checkVariables(const std::string& file, const std::vector<Statement>& statements,
                    Findings& findings) {
  VariableCheck check(file, statements, findings);
  for (const Statement& statement : statements) check.check(statement);
}

/// Labels and comments that no run comes to are no mistake.
bool doesSomething(const Statement& statement) {
  return statement.verb != Verb::Label && statement.verb != Verb::Comment;
}

bool isComputed(const std::string& text) {
  return text.find('@') != std::string::npos;
}

class ScriptCheck {
 public:
  ScriptCheck(const std::string& file, const std::vector<Statement>& statements, Findings& findings)
      : file_(file), statements_(statements), findings_(findings) {}

  void run();

 private:
  void checkLabels();
  void checkFirstStatement();
  void checkJumps();
  [[nodiscard]] std::vector<std::string> labelNames() const;
  [[nodiscard]] bool isJumpedTo(const std::string& label) const;
  void checkFlow();
  void checkReachable(const ScriptFlow& flow);
  void checkOrder(const ScriptFlow& flow);
  void checkSearches(const ScriptFlow& flow);
  void checkEnds(const ScriptFlow& flow);
  void error(std::size_t statement, const char* name, const std::string& text) {
    findings_.error(file_, statements_[statement].line, name, text);
  }

  const std::string& file_;
  const std::vector<Statement>& statements_;
  Findings& findings_;
  bool jumpsNowhere_ = false;
};

void ScriptCheck::run() {
  checkLabels();
  checkFirstStatement();
  checkJumps();
  checkFlow();
}

void ScriptCheck::checkLabels() {
  std::map<std::string, int> lineOfFirst;
  for (std::size_t i = 0; i < statements_.size(); ++i) {
    const Statement& statement = statements_[i];
    if (statement.verb != Verb::Label || statement.text == ":") continue;
    const auto [known, isNew] = lineOfFirst.try_emplace(statement.word, statement.line);
    if (isNew) continue;
    error(i, "doubled-label",
          "the label " + quotedName(statement.word) + " stands in line " +
              std::to_string(known->second) + " already; jumps never come here");
  }
}

/// The launcher looks for labels from the second statement on.
void ScriptCheck::checkFirstStatement() {
  if (statements_.empty() || statements_.front().verb != Verb::Label) return;
  const Statement& first = statements_.front();
  const std::string text =
      "no jump finds a label in the first statement: put a statement, such as a comment, before it";
  if (isJumpedTo(first.text)) return error(0, "label-in-first-statement", text);
  findings_.warning(file_, first.line, "label-in-first-statement", text);
}

/// By a label that is written out: what a computed one names is not known.
bool ScriptCheck::isJumpedTo(const std::string& label) const {
  return std::any_of(statements_.begin(), statements_.end(), [&label](const Statement& statement) {
    const std::optional<std::string> target = jumpTarget(statement);
    return target && ":" + *target == label;
  });
}

void ScriptCheck::checkJumps() {
  for (std::size_t i = 0; i < statements_.size(); ++i) {
    const std::optional<std::string> label = jumpTarget(statements_[i]);
    if (!label || isComputed(*label) || findLabelStatement(statements_, *label)) continue;
    jumpsNowhere_ = true;
    const bool isFirst = ":" + *label == statements_.front().text;
    if (isFirst) continue;  // reported where the label stands
    const bool hasMark = label->starts_with(':');
    error(i, "unknown-label",
          "there is no label " + quotedName(":" + *label) +
              (hasMark ? "; a jump names its label without the colon"
                       : suggestion(*label, labelNames())));
  }
}

std::vector<std::string> ScriptCheck::labelNames() const {
  std::vector<std::string> names;
  for (const Statement& statement : statements_) {
    if (statement.verb == Verb::Label) names.push_back(statement.word.substr(1));
  }
  return names;
}

void ScriptCheck::checkFlow() {
  if (statements_.empty()) return;
  const ScriptFlow flow = followScript(statements_);
  checkReachable(flow);
  checkOrder(flow);
  checkSearches(flow);
  checkEnds(flow);
}

/// A variable that something sets, but not on any way to where it is used. One that nothing sets is
/// reported as such.
void ScriptCheck::checkOrder(const ScriptFlow& flow) {
  const Setters setters(statements_);
  for (std::size_t i = 0; i < statements_.size(); ++i) {
    if (!flow.reachable[i]) continue;
    for (const int number : stringsUsedIn(statements_[i])) {
      const bool isSet = (flow.setStrings[i] >> (number - 1) & 1U) != 0;
      if (isSet || !setters.areSetting(number)) continue;
      error(i, "unset-variable",
            "S" + std::to_string(number) +
                " is empty here: what sets it stands behind this statement");
    }
  }
}

/// A warning: with the failure shown by FIND_JVM some authors want just that.
void ScriptCheck::checkSearches(const ScriptFlow& flow) {
  for (const std::size_t i : flow.uncheckedLaunches) {
    findings_.warning(file_, statements_[i].line, "unchecked-search",
                      "where no Java was found there is nothing to launch with, and the run ends "
                      "with 255: put \"JMP0 @N1@ label\" in front, and behind the label what the "
                      "user reads then");
  }
}

/// One finding for each stretch of statements that no run comes to.
void ScriptCheck::checkReachable(const ScriptFlow& flow) {
  bool inStretch = false;
  for (std::size_t i = 0; i < statements_.size(); ++i) {
    if (flow.reachable[i]) inStretch = false;
    if (flow.reachable[i] || inStretch || !doesSomething(statements_[i])) continue;
    inStretch = true;
    error(i, "unreachable-statement",
          "no run of the script comes here: remove it, or let a jump lead to a label above it");
  }
}

/// A script that ends by itself ends with 0, and a user takes that for a success.
void ScriptCheck::checkEnds(const ScriptFlow& flow) {
  if (flow.endsWithoutLaunch) {
    error(*flow.endsWithoutLaunch, "ends-without-launch",
          "from here the script can end with status 0 without having launched anything: end that "
          "way with \"ILAUNCH 0 0\", which fails with status 255, or launch a JVM file that tells "
          "the user what is missing");
  }
  if (flow.ends || jumpsNowhere_) return;
  error(statements_.size() - 1, "endless-script", "no way through the script comes to its end");
}

}  // namespace

std::vector<Statement> readStatements(const TagText& script) {
  std::vector<Statement> statements;
  for (const TextValue& value : script.valuesOf("INSTRUCTIONS")) {
    statements.push_back(readStatement(value.text, value.line));
  }
  return statements;
}

void checkScript(const TagText& script, const std::vector<Statement>& statements,
                 Findings& findings) {
  if (script.isReadable()) {
    requireTag(script, "INSTRUCTIONS", "whose values are the statements", findings);
  }
  checkStatements(script.file(), statements, findings);
  checkVariables(script.file(), statements, findings);
  ScriptCheck(script.file(), statements, findings).run();
}

}  // namespace vessant
