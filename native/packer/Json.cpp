#include "packer/Json.h"

namespace vessant {

std::string jsonText(const Json& json) {
  constexpr int kIndent = 2;
  return json.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace vessant
