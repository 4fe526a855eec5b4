// The functions that a launch command may call as %NAME%("argument", ...).
#pragma once

#include <cstdint>

#include "launcher/base/SString.h"
#include "launcher/base/StringDeque.h"
#include "launcher/launch/JvmTags.h"
#include "launcher/launch/LaunchContext.h"

namespace vessant {

/// What a function works on.
struct MacroCall {
  LaunchContext& context;
  JvmTags& jvm;
  const StringDeque& arguments;
  /// The launch script's own class path entry, expanded; only for a function that uses it.
  const SString& archive;
  bool includeArchives;
};

struct MacroFunction {
  static constexpr std::int32_t kAnyCount = -1;

  const char* name;
  std::int32_t fewestArguments;
  std::int32_t mostArguments;  // or kAnyCount
  const char* countMessage;
  bool usesArchive;
  /// The value that replaces the call. May throw LauncherException.
  SString (*evaluate)(const MacroCall& call);

  [[nodiscard]] bool accepts(std::int32_t count) const {
    return mostArguments == kAnyCount || (fewestArguments <= count && count <= mostArguments);
  }
};

/// The function of that name, or null.
[[nodiscard]] const MacroFunction* findMacroFunction(const SString& name);

}  // namespace vessant
