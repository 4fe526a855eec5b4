#include "launcher/launch/MacroHandler.h"

#include <cstdint>

#include "launcher/base/Exceptions.h"

namespace vessant {
namespace {

/// The closing delimiter is looked for this far behind the opening one, so that a doubled delimiter
/// closes nothing.
constexpr SString::Size kShortestMacro = 2;

/// No command has so many macros, and none that the system would run grows so far: a value leads
/// back to itself. The second bound keeps a value that grows with every turn from filling the
/// memory first.
constexpr int kMostExpansions = 10000;
constexpr std::uint64_t kMostGrowth = std::uint64_t{1} << 18;

void collapseDoubled(SString& text, char delimiter) {
  const char doubled[] = {delimiter, delimiter};
  SString::Size position = text.find(std::string_view(doubled, sizeof(doubled)));
  while (position != SString::npos) {
    text.erase(position, 1);
    position = text.find(std::string_view(doubled, sizeof(doubled)), position + 1);
  }
}

}  // namespace

SString expandMacros(const SString& source, MacroHandler& handler, char delimiter) {
  SString result = source;
  SString::Size start = result.find(delimiter);
  int expansions = 0;
  // In a text of less than two characters the bound wraps around; then no closing delimiter is
  // found.
  while (start != SString::npos && start < result.length() - kShortestMacro) {
    SString::Size end = result.find(delimiter, start + kShortestMacro);
    if (end == SString::npos) break;
    if (++expansions > kMostExpansions || result.length() > source.length() + kMostGrowth) {
      throw LauncherException("The expansion of a macro never ends: " + source);
    }
    handler.handleMacro(result, delimiter, start, end);
    start = result.find(delimiter, start);
  }
  collapseDoubled(result, delimiter);
  return result;
}

SString macroName(const SString& text, SString::Size start, SString::Size end) {
  return text.substr(start + 1, end - start - 1);
}

}  // namespace vessant
