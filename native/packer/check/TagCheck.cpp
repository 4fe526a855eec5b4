#include "packer/check/TagCheck.h"

#include <algorithm>
#include <cctype>
#include <map>

#include "launcher/base/TextUtil.h"
#include "packer/Text.h"
#include "packer/WrittenText.h"

namespace vessant {
namespace {

class TagCheck {
 public:
  TagCheck(const TagText& text, TextKind kind, const MacroTags& macroTags, Findings& findings)
      : text_(text), kind_(kind), macroTags_(macroTags), findings_(findings) {}

  void run();

 private:
  void checkUnknown(const TextTag& tag);
  void checkKnown(const TextTag& tag, const TagRule& rule);
  void checkBoolean(const TextTag& tag);
  void checkTitle(const TextTag& tag);
  void checkEscapes(const TextValue& value);
  void checkOneValue(const TextTag& tag);

  const TagText& text_;
  TextKind kind_;
  const MacroTags& macroTags_;
  Findings& findings_;
};

void TagCheck::run() {
  std::map<std::string, int> lineOfFirst;
  for (const TextTag& tag : text_.tags()) {
    const auto [known, isNew] = lineOfFirst.try_emplace(tag.name, tag.line);
    if (!isNew) {
      findings_.error(text_.file(), tag.line, "doubled-tag",
                      printable(tag.name) + " stands in line " + std::to_string(known->second) +
                          " already, whose values are lost: write one block with all values");
    }
    const TagRule* rule = findTagRule(kind_, tag.name);
    if (rule == nullptr) {
      checkUnknown(tag);
    } else {
      checkKnown(tag, *rule);
    }
  }
}

/// A JVM file may have tags of the author's own. One that no command uses is at least suspicious.
void TagCheck::checkUnknown(const TextTag& tag) {
  if (kind_ == TextKind::JvmFile && macroTags_.contains(tag.name)) return;
  const std::string hint = suggestion(tag.name, tagNames(kind_));
  if (kind_ == TextKind::JvmFile && hint.empty()) {
    findings_.warning(text_.file(), tag.line, "unknown-tag",
                      "the launcher does not know the tag " + quotedName(tag.name) +
                          ", and no command puts it in as @" + printable(tag.name) + "@");
    return;
  }
  findings_.error(text_.file(), tag.line, "unknown-tag",
                  std::string(textKindName(kind_)) + " has no tag " + quotedName(tag.name) + hint);
}

void TagCheck::checkKnown(const TextTag& tag, const TagRule& rule) {
  if (rule.use == TagUse::Boolean) checkBoolean(tag);
  if (rule.use == TagUse::Title) checkTitle(tag);
  if (rule.use != TagUse::List) checkOneValue(tag);
}

void TagCheck::checkBoolean(const TextTag& tag) {
  const TextValue& value = tag.values.front();
  if (value.text == "0" || value.text == "1") return;
  findings_.error(text_.file(), value.line, "bad-boolean",
                  tag.name + " must be 0 or 1, not " + quotedName(value.text));
}

/// The launcher makes a character of an escape with a single digit, too, and of what stands behind.
bool isReadAsEscape(std::string_view text) {
  const std::vector<std::uint32_t> codes = decodeUnicodeEscapes(sstr(text));
  return codes.size() > 1 && codes[1] == 0;
}

bool looksLikeEscape(std::string_view text) {
  const bool isMarked = text.starts_with("\\u") || text.starts_with("\\U");
  return isMarked && text.size() > 2 && std::isxdigit(static_cast<unsigned char>(text[2])) != 0;
}

/// An escape must be one for the author and for the launcher alike, and show something.
void TagCheck::checkEscapes(const TextValue& value) {
  constexpr std::size_t kEscapeLength = 6;
  constexpr std::uint32_t kFirstPrintable = 0x20;
  const std::string_view text = value.text;
  for (std::size_t i = text.find('\\'); i != std::string_view::npos; i = text.find('\\', i + 1)) {
    const std::string_view escape = text.substr(i, kEscapeLength);
    const std::optional<std::uint32_t> character = writtenEscapeAt(text, i);
    if (character && *character >= kFirstPrintable) continue;
    if (!character && !isReadAsEscape(escape) && !looksLikeEscape(escape)) continue;
    findings_.error(text_.file(), value.line, "bad-escape",
                    quotedName(escape) +
                        " is no character: write four hexadecimal digits, as in "
                        "\\u00e9, and a backslash itself as \\u005c");
  }
}

void TagCheck::checkTitle(const TextTag& tag) {
  const TextValue& value = tag.values.front();
  checkEscapes(value);
  checkEscapes(value);
  const auto isRaw = [](char c) { return static_cast<unsigned char>(c) > 0x7F; };
  if (std::none_of(value.text.begin(), value.text.end(), isRaw)) return;
  findings_.error(text_.file(), value.line, "raw-title",
                  "a title with other than ASCII letters comes out garbled where the user's "
                  "character set differs: write them as \\u00e9");
}

void TagCheck::checkOneValue(const TextTag& tag) {
  if (tag.values.size() == 1) return;
  findings_.error(text_.file(), tag.values[1].line, "unused-value",
                  "only the first value of " + tag.name +
                      " counts: write all of it in one line, or remove the others");
}

/// A tag that is misspelt is reported as such, and not as missing, too.
bool isMisspelt(const TagText& text, const std::string& name) {
  return std::any_of(text.tags().begin(), text.tags().end(), [&name](const TextTag& tag) {
    return tag.name != name && nearest(tag.name, {name}) &&
           findTagRule(TextKind::JvmFile, tag.name) == nullptr;
  });
}

}  // namespace

void checkTags(const TagText& text, TextKind kind, const MacroTags& macroTags, Findings& findings) {
  TagCheck(text, kind, macroTags, findings).run();
}

void requireTag(const TagText& text, const char* name, const std::string& purpose,
                Findings& findings) {
  if (!text.textOf(name).empty() || isMisspelt(text, name)) return;
  const TextTag* empty = text.find(name);
  const int line = empty == nullptr ? 1 : empty->line;
  findings.error(text.file(), line, "missing-tag",
                 std::string(empty == nullptr ? "there is no " : "there is no value for ") + name +
                     ", " + purpose);
}

}  // namespace vessant
