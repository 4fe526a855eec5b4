// What launching asks of the Java VM that was chosen: the tags of the file that describes it.
#pragma once

#include <string_view>

#include "launcher/base/SString.h"
#include "launcher/launch/MacroHandler.h"
#include "launcher/tagfile/TagFile.h"

namespace vessant {

/// A macro handler over the tags: @TAG@ is the tag's first value.
class JvmTags : public MacroHandler {
 public:
  /// The tags are the caller's and must outlive this.
  explicit JvmTags(TagFile& tags) : tags_(tags) {}
  JvmTags(const JvmTags&) = delete;
  JvmTags& operator=(const JvmTags&) = delete;
  virtual ~JvmTags() = default;

  [[nodiscard]] TagFile& tags() const { return tags_; }
  /// The first value of a tag; empty when it is absent.
  [[nodiscard]] SString tag(std::string_view name) const { return tags_.getValue(name); }

  void handleMacro(MacroText& text, char delimiter, SString::Size end) override;

 private:
  TagFile& tags_;
};

/// `text` with the @TAG@ macros of a JVM file expanded. Throws EndlessMacro.
[[nodiscard]] SString expandJVMMacros(JvmTags& jvm, const SString& text);

}  // namespace vessant
