#include "launcher/instructions/InstructionRun.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/instructions/Variables.h"

namespace vessant {
namespace {

constexpr const char* kStatementsTag = "INSTRUCTIONS";
constexpr char kVariableMark = '@';

}  // namespace

InstructionRun::InstructionRun(const TagFile& script, InstructionActions& actions)
    : actions_(actions),
      statements_(script.findValues(kStatementsTag)),
      count_(statements_ == nullptr ? 0 : statements_->count()) {}

void InstructionRun::instructionError(const SString& message) const {
  throw InstructionsException(message, programCounter_ + 1);
}

void InstructionRun::substituteVariables(SString& text, const SString& callerContext) const {
  const SString context = callerContext + " ";
  if (text.isEmpty()) instructionError(context + "Empty expression.");
  while (substituteOnce(text, context)) {
  }
}

/// One scan over the text; true when it replaced a reference, whose value may hold further ones.
bool InstructionRun::substituteOnce(SString& text, const SString& context) const {
  bool replaced = false;
  SString::Size open = text.find(kVariableMark);
  while (open != SString::npos) {
    const SString::Size close = text.find(kVariableMark, open + 1);
    if (close == SString::npos) instructionError(context + "Invalid variable specification.");
    if (close == open + 1) {
      text.erase(close, 1);  // a doubled mark stands for one
    } else {
      const SString specification = text.substr(open + 1, close - open - 1);
      const VariableSpecification variable = parseVariableSpecification(specification, context);
      text.replace(open, close - open + 1, variableText(variable, actions_));
      replaced = true;
    }
    // One on from where the reference began, not from where its value ends. Kept: a mark that a
    // value begins with pairs with nothing in this scan.
    open = text.find(kVariableMark, open + 1);
  }
  return replaced;
}

std::int32_t InstructionRun::numericValue(const SString& token, const SString& context) const {
  SString text = token;
  substituteVariables(text, context);
  std::int32_t number = 0;
  if (stringToLong(text, number)) return number;
  instructionError(context + "Invalid numeric expression (" + text + ")");
}

std::int16_t InstructionRun::shortValue(const SString& token, const SString& context) const {
  SString text = token;
  substituteVariables(text, context);
  std::int16_t number = 0;
  if (stringToShort(text, number)) return number;
  instructionError(context + " Invalid numeric expression (" + text + ")");
}

bool InstructionRun::booleanValue(const SString& token, const SString& context) const {
  const std::int32_t number = numericValue(token, context);
  if (number == 0 || number == 1) return number == 1;
  instructionError(context + " Invalid boolean value (" + token + ")");
}

SString InstructionRun::textValue(const SString& text, const SString& context) const {
  SString value;
  const bool isQuoted = text.view().starts_with('"');
  SString::Size position = isQuoted ? 1 : 0;
  nextArgument(value, text, position, isQuoted ? ArgumentForm::Quoted : ArgumentForm::Plain);
  substituteVariables(value, context);
  return value;
}

std::int32_t InstructionRun::findLabel(const SString& label) const {
  SString text = SString(1, kLabelMark) + label;
  substituteVariables(text, "Invalid label specified.");
  if (text.length() == 1) {
    instructionError("Label " + label + " resolved to a blank string. Labels cannot be blank.");
  }
  for (std::int32_t i = 1; i < count_; ++i) {
    if (statements_->get(i) == text) return i;
  }
  instructionError("Label not found (" + label + ")");
}

}  // namespace vessant
