#include "launcher/instructions/Variables.h"

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

constexpr std::size_t kShortest = 2;

char upperCase(char letter) {
  return 'a' <= letter && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

}  // namespace

VariableSpecification parseVariableSpecification(std::string_view text, std::string_view context) {
  if (text.size() < kShortest) {
    throw LauncherException(
        SString(context) + " Variable references must be at least 2 characters (e.g. N1 and S10).");
  }
  const char type = upperCase(text.front());
  if (type != 'N' && type != 'S') {
    throw LauncherException(SString(context) + " Invalid variable reference (" + text +
                            "). Must use N or S as the variable type, e.g. N2 or S1.");
  }
  const std::string_view rest = text.substr(1);
  const std::int32_t most =
      type == 'N' ? InstructionActions::kNumericVariables : InstructionActions::kStringVariables;
  std::int32_t number = 0;
  if (!stringToLong(rest, number) || number < 1 || number > most) {
    throw LauncherException(SString(context) + " Variable number is invalid (" + rest + ")");
  }
  return {type, number};
}

SString variableText(const VariableSpecification& variable, const InstructionActions& actions) {
  if (variable.type == 'S') return actions.getStringVariable(variable.number);
  return longToString(actions.getNumericVariable(variable.number));
}

}  // namespace vessant
