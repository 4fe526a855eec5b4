#include "packer/check/ScriptFlow.h"

#include <array>
#include <set>
#include <tuple>
#include <unordered_map>

#include "packer/check/Statement.h"

namespace vessant {
namespace {

/// Scripts with more ways than this are not followed to the end; nothing is said of them.
constexpr std::size_t kMostStates = 100000;

/// All ten string variables.
constexpr std::uint16_t kAllStrings = 0x3FF;
/// The index of N1, in which searches answer.
constexpr std::size_t kAnswer = 0;

enum class Known : char { Zero, NotZero, Nothing };

/// A place in the script and what is known there.
struct State {
  std::size_t place = 0;
  std::array<Known, InstructionActions::kNumericVariables> numbers{};  // all 0 at the start
  /// The string variables that were set on the way: bit 0 for S1.
  std::uint16_t strings = 0;
  /// Whether a search may have found nothing and N1, which tells, was not asked yet.
  bool unchecked = false;
  bool launched = false;
  /// Behind a jump whose target is not known.
  bool uncertain = false;
  /// The last statement that decided where to go on.
  std::size_t cameFrom = 0;

  [[nodiscard]] auto key() const {
    return std::tuple(place, numbers, strings, unchecked, launched, uncertain);
  }
  friend bool operator<(const State& a, const State& b) { return a.key() < b.key(); }
};

Known ofNumber(std::int64_t number) {
  return number == 0 ? Known::Zero : Known::NotZero;
}

class FlowReader {
 public:
  explicit FlowReader(const std::vector<Statement>& statements);

  ScriptFlow follow();

 private:
  void step(State state);
  void jump(const State& state, const std::string& label);
  void branch(State state);
  void search(State& state) const;
  void launch(State& state);
  void assign(State& state) const;
  void reach(State state, std::size_t place);
  [[nodiscard]] Known valueOf(const State& state, const std::string& expression) const;
  [[nodiscard]] static std::optional<std::size_t> numberOf(const std::string& reference);

  const std::vector<Statement>& statements_;
  std::unordered_map<std::string, std::size_t> labels_;
  ScriptFlow flow_;
  std::set<State> seen_;
  std::vector<State> open_;
};

FlowReader::FlowReader(const std::vector<Statement>& statements) : statements_(statements) {
  for (std::size_t i = 1; i < statements.size(); ++i) {
    if (statements[i].verb == Verb::Label) labels_.try_emplace(statements[i].text, i);
  }
}

ScriptFlow FlowReader::follow() {
  flow_.reachable.assign(statements_.size(), false);
  flow_.setStrings.assign(statements_.size(), 0);
  reach(State{}, 0);
  while (!open_.empty() && seen_.size() < kMostStates) {
    State state = open_.back();
    open_.pop_back();
    flow_.reachable[state.place] = true;
    flow_.setStrings[state.place] |= state.strings;
    step(state);
  }
  if (open_.empty()) return std::move(flow_);
  flow_.reachable.assign(statements_.size(), true);
  flow_.setStrings.assign(statements_.size(), kAllStrings);
  return {flow_.reachable, std::nullopt, true, flow_.setStrings, {}};
}

void FlowReader::step(State state) {
  const Statement& statement = statements_[state.place];
  const std::optional<std::string> label = jumpTarget(statement);
  switch (statement.verb) {
    case Verb::Jmp0:
      return branch(state);
    case Verb::Goto:
      state.cameFrom = state.place;
      return jump(state, label.value_or(""));
    case Verb::FindJvm:
    case Verb::InstallJvm:
    case Verb::Verify:
      search(state);
      break;
    case Verb::Set:
      assign(state);
      break;
    case Verb::Launch:
    case Verb::ILaunch:
    case Verb::ExecuteLauncher:
      launch(state);
      break;
    default:
      break;
  }
  const std::size_t next = state.place + 1;
  reach(state, next);
}

/// A computed label may be any. One that is not there is reported elsewhere and was meant to be
/// somewhere.
void FlowReader::jump(const State& state, const std::string& label) {
  const auto target = labels_.find(":" + label);
  if (target != labels_.end()) return reach(state, target->second);
  State anywhere = state;
  anywhere.numbers.fill(Known::Nothing);
  anywhere.uncertain = true;
  anywhere.strings = kAllStrings;
  anywhere.unchecked = false;
  for (const auto& [text, place] : labels_) reach(anywhere, place);
  if (label.find('@') == std::string::npos) reach(anywhere, state.place + 1);
}

void FlowReader::branch(State state) {
  const std::string expression = statements_[state.place].argument(0);
  const Known value = valueOf(state, expression);
  const std::optional<std::size_t> variable = numberOf(expression);
  state.cameFrom = state.place;
  if (variable == kAnswer) state.unchecked = false;
  if (value != Known::NotZero) {
    State jumping = state;
    if (variable) jumping.numbers[*variable] = Known::Zero;
    jump(jumping, statements_[state.place].argument(1));
  }
  if (value == Known::Zero) return;
  if (variable) state.numbers[*variable] = Known::NotZero;
  const std::size_t next = state.place + 1;
  reach(state, next);
}

/// FIND_JVM sets S1 and S2, the others S1.
void FlowReader::search(State& state) const {
  constexpr std::uint16_t kHome = 1;
  constexpr std::uint16_t kHomeAndFile = 3;
  const bool finds = statements_[state.place].verb == Verb::FindJvm;
  state.numbers[kAnswer] = Known::Nothing;
  state.strings |= finds ? kHomeAndFile : kHome;
  state.unchecked = statements_[state.place].verb != Verb::Verify;
}

/// Only what the search itself has set is empty when it found nothing.
void FlowReader::launch(State& state) {
  const std::string file = statements_[state.place].argument(0);
  state.launched = true;
  const bool isFound =
      file.find("@S1@") != std::string::npos || file.find("@S2@") != std::string::npos;
  if (state.unchecked && isFound) flow_.uncheckedLaunches.insert(state.place);
}

void FlowReader::assign(State& state) const {
  const Statement& statement = statements_[state.place];
  // A copy of N1 may be asked in its place, and S2 may get another value where it was empty.
  state.unchecked = false;
  std::string reason;
  const std::optional<VariableSpecification> set = parseVariable(statement.argument(0), reason);
  if (set && set->type == 'S') state.strings |= static_cast<std::uint16_t>(1U << (set->number - 1));
  const std::optional<std::size_t> variable = numberOf("@" + statement.argument(0) + "@");
  if (variable) state.numbers[*variable] = valueOf(state, statement.argument(1));
}

void FlowReader::reach(State state, std::size_t place) {
  state.place = place;
  if (place < statements_.size()) {
    if (seen_.insert(state).second) open_.push_back(state);
    return;
  }
  flow_.ends = true;
  if (state.launched || state.uncertain || statements_.empty()) return;
  const std::size_t from = state.cameFrom;
  if (!flow_.endsWithoutLaunch || from < *flow_.endsWithoutLaunch) flow_.endsWithoutLaunch = from;
}

Known FlowReader::valueOf(const State& state, const std::string& expression) const {
  const std::optional<std::size_t> variable = numberOf(expression);
  if (variable) return state.numbers[*variable];
  const std::optional<std::int64_t> number = wholeNumber(expression);
  return number ? ofNumber(*number) : Known::Nothing;
}

/// The index of the numeric variable that a text is a reference to, and nothing else.
std::optional<std::size_t> FlowReader::numberOf(const std::string& reference) {
  const References references = referencesIn(reference);
  if (references.specifications.size() != 1) return std::nullopt;
  const std::string& name = references.specifications.front();
  if (reference != "@" + name + "@") return std::nullopt;
  std::string reason;
  const std::optional<VariableSpecification> variable = parseVariable(name, reason);
  if (!variable || variable->type != 'N') return std::nullopt;
  return static_cast<std::size_t>(variable->number - 1);
}

}  // namespace

std::optional<std::size_t> findLabelStatement(const std::vector<Statement>& statements,
                                              const std::string& label) {
  for (std::size_t i = 1; i < statements.size(); ++i) {
    if (statements[i].text == ":" + label) return i;
  }
  return std::nullopt;
}

ScriptFlow followScript(const std::vector<Statement>& statements) {
  return FlowReader(statements).follow();
}

}  // namespace vessant
