// The tags that each kind of text knows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vessant {

enum class TextKind { Manifest, Instructions, JvmFile, LaunchScript };

/// What the launcher makes of a tag's values.
enum class TagUse {
  /// The first value is a text.
  Text,
  /// The first value is a text that users see.
  Title,
  /// The first value is 0 or 1.
  Boolean,
  /// Every value counts.
  List,
};

struct TagRule {
  const char* name;
  TagUse use;
};

/// The rule for a tag, or null when texts of this kind do not know it.
[[nodiscard]] const TagRule* findTagRule(TextKind kind, std::string_view name);
/// The names of all tags of a kind.
[[nodiscard]] std::vector<std::string> tagNames(TextKind kind);
/// What a kind of text is called in a sentence, with its article.
[[nodiscard]] const char* textKindName(TextKind kind);

}  // namespace vessant
