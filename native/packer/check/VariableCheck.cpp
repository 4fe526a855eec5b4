#include "packer/check/VariableCheck.h"

#include <map>
#include <set>

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
    for (const std::string& name : referencesIn(statement.arguments[index]).specifications) {
      std::string reason;
      const auto variable = parseVariable(name, reason);
      if (!variable || variable->type != 'S') continue;
      checkUse(statement, variable->number, index);
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

}  // namespace

void checkVariables(const std::string& file, const std::vector<Statement>& statements,
                    Findings& findings) {
  VariableCheck check(file, statements, findings);
  for (const Statement& statement : statements) check.check(statement);
}

}  // namespace vessant
