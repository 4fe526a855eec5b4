#include "packer/Template.h"

#include <algorithm>

namespace vessant {

std::string filled(std::string_view text, const Fillings& fillings) {
  std::string result;
  while (!text.empty()) {
    const std::size_t begin = std::min(text.find('<'), text.size());
    result += text.substr(0, begin);
    text.remove_prefix(begin);
    const std::size_t end = text.find('>');
    const std::string_view name = text.substr(0, end).substr(std::min<std::size_t>(1, text.size()));
    const auto filling = std::find_if(fillings.begin(), fillings.end(),
                                      [name](const auto& known) { return known.first == name; });
    const bool isMark = end != std::string_view::npos && filling != fillings.end();
    if (isMark) result += filling->second;
    if (!isMark && !text.empty()) result += text.front();
    text.remove_prefix(isMark ? end + 1 : std::min<std::size_t>(1, text.size()));
  }
  return result;
}

}  // namespace vessant
