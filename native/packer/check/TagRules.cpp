#include "packer/check/TagRules.h"

#include <span>

namespace vessant {
namespace {

constexpr TagRule kManifest[] = {
    {"OUTPUT", TagUse::Text},   {"LAUNCHER", TagUse::Text}, {"MODE", TagUse::Text},
    {"ALIGN", TagUse::Boolean}, {"FILES", TagUse::List},
};

constexpr TagRule kInstructions[] = {
    {"INSTRUCTIONS", TagUse::List},
};

// The last two are written by the launcher into the JVM file of a match.
constexpr TagRule kJvmFile[] = {
    {"DESC", TagUse::Title},
    {"JVM_PROPERTIES", TagUse::List},
    {"JVM_EXE", TagUse::Text},
    {"PATH_HINT", TagUse::List},
    {"PLATFORM_HINT", TagUse::List},
    {"SEARCH_ALL", TagUse::Boolean},
    {"JVM_HOME", TagUse::Text},
    {"CLASSPATH", TagUse::Text},
    {"CLASSPATH_SEPARATOR", TagUse::Text},
    {"JVM_CLASSPATH", TagUse::Text},
    {"USE_CP_ENV_VAR", TagUse::Boolean},
    {"CP_ENV_VAR", TagUse::Text},
    {"SYSTEM", TagUse::Text},
    {"SYSTEM_SEPARATOR", TagUse::Text},
    {"REQ_JAVA_ARGS", TagUse::Text},
    {"SET_ENV_FOR_WIZARD", TagUse::List},
    {"JVM_FILE", TagUse::Text},
    {"JVM_TEMP", TagUse::Boolean},
};

constexpr TagRule kLaunchScript[] = {
    {"DESC", TagUse::Title},
    {"COMMAND", TagUse::Text},
    {"DISPLAY_CONSOLE", TagUse::Boolean},
    {"AUTO_SET_WORKING_DIR", TagUse::Boolean},
    {"ARCHIVE", TagUse::Text},
};

std::span<const TagRule> rulesOf(TextKind kind) {
  if (kind == TextKind::Manifest) return kManifest;
  if (kind == TextKind::Instructions) return kInstructions;
  if (kind == TextKind::JvmFile) return kJvmFile;
  return kLaunchScript;
}

}  // namespace

const TagRule* findTagRule(TextKind kind, std::string_view name) {
  for (const TagRule& rule : rulesOf(kind)) {
    if (name == rule.name) return &rule;
  }
  return nullptr;
}

std::vector<std::string> tagNames(TextKind kind) {
  std::vector<std::string> names;
  for (const TagRule& rule : rulesOf(kind)) names.emplace_back(rule.name);
  return names;
}

const char* textKindName(TextKind kind) {
  if (kind == TextKind::Manifest) return "a manifest";
  if (kind == TextKind::Instructions) return "an instruction script";
  if (kind == TextKind::JvmFile) return "a JVM file";
  return "a launch script";
}

}  // namespace vessant
