#include "packer/FindingOptions.h"

#include <algorithm>

#include "packer/FindingNames.h"
#include "packer/Nearest.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// The reason why a name is refused; empty for a known one.
std::string checkName(const std::string& name) {
  const std::vector<std::string>& names = findingNames();
  if (std::find(names.begin(), names.end(), name) != names.end()) return "";
  return "there is no finding " + quotedName(name) + suggestion(name, names);
}

}  // namespace

void addAllowOption(CLI::App& command, FindingOptions& options) {
  command.add_option("--allow", options.allowed, "Turn findings of this name off")
      ->type_name("NAME")
      ->allow_extra_args(false)
      ->check(checkName);
}

void addJsonOption(CLI::App& command, bool& json, const char* help) {
  command.add_flag("--json", json, help);
}

}  // namespace vessant
