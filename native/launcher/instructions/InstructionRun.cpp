#include "launcher/instructions/InstructionRun.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/StatementArguments.h"

namespace vessant {
namespace {

constexpr const char* kStatementsTag = "INSTRUCTIONS";
constexpr char kVariableMark = '@';

bool hasVariable(std::string_view text) {
  return text.find(kVariableMark) != std::string_view::npos;
}

}  // namespace

InstructionRun::InstructionRun(const TagFile& script, InstructionActions& actions)
    : actions_(actions),
      script_(script.tags()),
      statements_(script_.find(kStatementsTag)),
      count_(statements_ == TagTable::kNowhere ? 0 : script_.valueCount(statements_)) {}

void InstructionRun::instructionError(const SString& message) const {
  throw InstructionsException(message, programCounter_ + 1);
}

void InstructionRun::substituteVariables(SString& text, std::string_view context) const {
  if (text.isEmpty()) instructionError(SString(context) + " Empty expression.");
  while (substituteOnce(text, context)) {
  }
}

/// One scan over the text; true when it replaced a reference, whose value may hold further ones.
bool InstructionRun::substituteOnce(SString& text, std::string_view context) const {
  bool replaced = false;
  SString::Size open = text.find(kVariableMark);
  while (open != SString::npos) {
    const SString::Size close = text.find(kVariableMark, open + 1);
    if (close == SString::npos) {
      instructionError(SString(context) + " Invalid variable specification.");
    }
    if (close == open + 1) {
      text.erase(close, 1);  // a doubled mark stands for one
    } else {
      actions_.throwIfCanceled();  // a value that refers to itself never comes to an end
      const std::string_view specification = text.view().substr(open + 1, close - open - 1);
      // Kept: with the blank that its own texts begin with, two stand in front of them.
      const VariableSpecification variable =
          parseVariableSpecification(specification, context, "  ");
      text.replace(open, close - open + 1, variableText(variable, actions_));
      replaced = true;
    }
    // One on from where the reference began, not from where its value ends. Kept: a mark that a
    // value begins with pairs with nothing in this scan.
    open = text.find(kVariableMark, open + 1);
  }
  return replaced;
}

std::int32_t InstructionRun::numericValue(std::string_view token, std::string_view context) const {
  std::int32_t number = 0;
  if (stringToLong(token, number) && !hasVariable(token)) return number;
  SString text = token;
  substituteVariables(text, context);
  if (stringToLong(text, number)) return number;
  instructionError(SString(context) + "Invalid numeric expression (" + text + ")");
}

std::int16_t InstructionRun::shortValue(std::string_view token, std::string_view context) const {
  SString text = token;
  substituteVariables(text, context);
  std::int16_t number = 0;
  if (stringToShort(text, number)) return number;
  instructionError(SString(context) + " Invalid numeric expression (" + text + ")");
}

bool InstructionRun::booleanValue(std::string_view token, std::string_view context) const {
  const std::int32_t number = numericValue(token, context);
  if (number == 0 || number == 1) return number == 1;
  instructionError(SString(context) + " Invalid boolean value (" + token + ")");
}

SString InstructionRun::textValue(std::string_view text, std::string_view context) const {
  SString value;
  if (text.starts_with('"')) {
    SString::Size position = 1;
    nextArgument(value, text, position, ArgumentForm::Quoted);
  } else {
    value = text.substr(0, text.find_first_of(kWhitespace));
  }
  substituteVariables(value, context);
  return value;
}

std::int32_t InstructionRun::findLabel(std::string_view label) {
  SString text = SString(1, kLabelMark).append(label);
  substituteVariables(text, "Invalid label specified.");
  if (text.length() == 1) {
    instructionError(SString("Label ") + label +
                     " resolved to a blank string. Labels cannot be blank.");
  }
  if (!labels_) indexLabels();
  const auto found = labels_->find(text);
  if (found != labels_->end()) return found->second;
  instructionError(SString("Label not found (") + label + ")");
}

/// Of equal labels the first is kept.
void InstructionRun::indexLabels() {
  labels_.emplace();
  for (std::int32_t i = 1; i < count_; ++i) {
    const std::string_view statement = statementAt(i);
    if (statement.starts_with(kLabelMark)) labels_->emplace(statement, i);
  }
}

}  // namespace vessant
