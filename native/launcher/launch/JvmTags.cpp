#include "launcher/launch/JvmTags.h"

#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

constexpr char kTagDelimiter = '@';

}  // namespace

/// A backslash at the end of a home would escape the quote behind it. A slash does no harm.
void JvmTags::handleMacro(MacroText& text, char /*delimiter*/, SString::Size end) {
  const SString name = macroName(text, end);
  SString value = tag(name);
  if (name == jvmtag::kHome && value.view().ends_with('\\')) value.erase(value.length() - 1);
  text.replace(end + 1, value);
}

SString expandJVMMacros(JvmTags& jvm, const SString& text) {
  return expandMacros(text, jvm, kTagDelimiter);
}

}  // namespace vessant
