#include "launcher/driver/ResultVariables.h"

#include <cstddef>

#include "launcher/base/Exceptions.h"
#include "launcher/base/TextUtil.h"

namespace vessant {
namespace {

/// Scripts check their numbers before; these texts are for the operations' own callers.
std::size_t indexOf(std::int32_t number, std::int32_t most, const char* message) {
  if (number < 1 || number > most) throw LauncherException(message + longToString(number));
  return static_cast<std::size_t>(number - 1);
}

std::size_t stringIndex(std::int32_t number) {
  return indexOf(number, InstructionActions::kStringVariables, "Invalid string variable number: ");
}

std::size_t numericIndex(std::int32_t number) {
  return indexOf(number, InstructionActions::kNumericVariables,
                 "Invalid numeric variable number: ");
}

}  // namespace

const SString& ResultVariables::getStringVariable(std::int32_t number) const {
  return strings_[stringIndex(number)];
}

void ResultVariables::setStringVariable(std::int32_t number, const SString& value) {
  strings_[stringIndex(number)] = value;
}

std::int32_t ResultVariables::getNumericVariable(std::int32_t number) const {
  return numbers_[numericIndex(number)];
}

void ResultVariables::setNumericVariable(std::int32_t number, std::int32_t value) {
  numbers_[numericIndex(number)] = value;
}

}  // namespace vessant
