#include "packer/Text.h"

#include <nlohmann/json.hpp>

namespace vessant {

std::string printable(std::string_view text) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  constexpr unsigned char kDelete = 0x7F;
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= ' ' && byte != kDelete) {
      result += character;
    } else {
      result += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return result;
}

std::string quotedName(std::string_view text) {
  return '"' + printable(text) + '"';
}

std::string jsonText(const Json& json) {
  constexpr int kIndent = 2;
  return json.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace vessant
