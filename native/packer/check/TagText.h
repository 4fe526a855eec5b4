// A tag file with the place of everything in it.
//
// The launcher's own parser stops at the first error and forgets lines. This one goes on behind an
// error, as the author most likely meant the text, so that all mistakes are found at once. On texts
// without mistakes both agree.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "packer/Finding.h"
#include "packer/check/TagRules.h"

namespace vessant {

/// One value of a tag, and where it stands.
struct TextValue {
  /// What the launcher makes of it.
  std::string text;
  int line = 0;
  /// What the author seems to have meant: other than `text` only when that was cut behind a quote.
  std::string meant;
};

/// One tag with all its values. Of a tag that stands twice there are two.
struct TextTag {
  std::string name;
  int line = 0;
  std::vector<TextValue> values;
};

class TagText {
 public:
  TagText() = default;
  explicit TagText(std::string file) : file_(std::move(file)) {}

  /// The name for findings.
  [[nodiscard]] const std::string& file() const { return file_; }
  /// In the order of the text; a doubled tag stands twice.
  [[nodiscard]] const std::vector<TextTag>& tags() const { return tags_; }
  /// The definition that counts, which is the last, or null.
  [[nodiscard]] const TextTag* find(std::string_view name) const;
  /// Its first value, or null.
  [[nodiscard]] const TextValue* value(std::string_view name) const;
  /// Its first value's text; empty when there is none.
  [[nodiscard]] std::string textOf(std::string_view name) const;
  /// All values of the tag; none when it is absent.
  [[nodiscard]] const std::vector<TextValue>& valuesOf(std::string_view name) const;

  /// False for a text that cannot be looked at any further.
  [[nodiscard]] bool isReadable() const { return readable_; }
  /// After this, `check` says nothing more of the text: every further finding would be the same
  /// one.
  void setUnreadable() { readable_ = false; }
  void add(TextTag tag) { tags_.push_back(std::move(tag)); }

 private:
  std::string file_;
  std::vector<TextTag> tags_;
  bool readable_ = true;
};

/// Reads a text and reports every flaw of its form. `file` names it in findings.
[[nodiscard]] TagText readTagText(const std::string& file, std::string_view bytes, TextKind kind,
                                  Findings& findings);

}  // namespace vessant
