#include "packer/check/TagText.h"

#include <algorithm>
#include <optional>
#include <set>

#include "launcher/base/Exceptions.h"
#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "packer/Text.h"

namespace vessant {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";

/// With a mark, or as Latin letters look without one: every second byte is zero.
bool isUtf16(std::string_view bytes) {
  if (bytes.starts_with(kLittleEndianMark) || bytes.starts_with(kBigEndianMark)) return true;
  constexpr std::size_t kFewest = 4;
  const std::string_view start = bytes.substr(0, 256);
  const auto zeros = std::count(start.begin(), start.end(), '\0');
  return start.size() >= kFewest && static_cast<std::size_t>(zeros) * 5 >= start.size() * 2;
}

/// Calls `report` once for each line that has a flaw.
template <typename IsFlaw, typename Report>
void forEachFlawedLine(std::string_view bytes, IsFlaw isFlaw, Report report) {
  int line = 1;
  bool reported = false;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (!reported && isFlaw(i)) {
      report(line);
      reported = true;
    }
    if (bytes[i] != '\n') continue;
    ++line;
    reported = false;
  }
}

std::optional<std::string_view> checkEncoding(const std::string& file, std::string_view bytes,
                                              Findings& findings) {
  if (isUtf16(bytes)) {
    findings.error(file, 1, "utf-16",
                   "the text is UTF-16, which the launcher cannot read: save it as ASCII or UTF-8");
    return std::nullopt;
  }
  if (bytes.starts_with(kUtf8Mark)) {
    findings.error(file, 1, "byte-order-mark",
                   "a byte order mark stands in front of the first tag and becomes a part of its "
                   "name: save the text without it");
    bytes.remove_prefix(kUtf8Mark.size());
  }
  const auto isStrayReturn = [bytes](std::size_t i) {
    return bytes[i] == '\r' && (i + 1 == bytes.size() || bytes[i + 1] != '\n');
  };
  forEachFlawedLine(bytes, isStrayReturn, [&](int line) {
    findings.error(file, line, "stray-carriage-return",
                   "a carriage return that ends no line is dropped, and what stands on both sides "
                   "is read as one: end lines with a line feed");
  });
  const auto isZero = [bytes](std::size_t i) { return bytes[i] == '\0'; };
  forEachFlawedLine(bytes, isZero, [&](int line) {
    findings.error(file, line, "zero-byte", "a zero byte is no part of a text: remove it");
  });
  return bytes;
}

constexpr std::string_view kBlockEnd = "/:";

bool isMisspeltBlockEnd(const SString& line) {
  static const std::set<std::string, std::less<>> forms = {
      "/", ":/", "/;", "\\:", "/ :", "//:", "/::"};
  return forms.contains(line.view());
}

bool looksLikeComment(const SString& line) {
  const std::string_view text = line.view();
  return text.starts_with("#") || text.starts_with("//") || text.starts_with(";") ||
         text.starts_with("<!--") || text.starts_with("--");
}

class TagTextReader {
 public:
  TagTextReader(const std::string& file, std::string_view bytes, TextKind kind, Findings& findings)
      : bytes_(bytes), kind_(kind), findings_(findings), text_(file) {}

  TagText read();

 private:
  bool nextLine();
  void readTag();
  void readBlock(TextTag tag);
  void noteBlockEnd(const TextTag& tag, const std::string& reason);
  [[nodiscard]] std::optional<std::string> knownTagOnLine() const;
  [[nodiscard]] TextValue valueFrom(const std::string& tag, SString::Size start);
  void reportBehindQuote(const std::string& tag, std::string_view behind);
  void keep(TextTag tag);
  void error(const char* name, const std::string& text) {
    findings_.error(text_.file(), number_, name, text);
  }

  SString bytes_;
  TextKind kind_;
  Findings& findings_;
  TagText text_;
  SString::Size position_ = 0;
  SString line_;
  int number_ = 0;
  bool again_ = false;  // the line was looked at by a block that it does not belong to
};

TagText TagTextReader::read() {
  while (nextLine()) {
    if (!line_.isEmpty()) readTag();
  }
  return text_;
}

bool TagTextReader::nextLine() {
  if (again_) {
    again_ = false;
    return true;
  }
  if (position_ >= bytes_.length()) return false;
  line_.erase();
  readLine(bytes_, position_, line_);
  ++number_;
  return true;
}

void TagTextReader::readTag() {
  if (line_ == kBlockEnd) {
    return error("stray-block-end", "no block is open here: remove this \"/:\"");
  }
  if (looksLikeComment(line_)) {
    return error("no-comments", "there are no comments here: remove this line");
  }
  const SString::Size colon = line_.find(':');
  if (colon == SString::npos) {
    return error("missing-colon", "expected a tag, such as \"DESC: text\", but there is no colon");
  }
  TextTag tag{str(trimmed(line_.substr(0, colon))), number_, {}};
  if (tag.name.empty()) return error("missing-tag-name", "there is no name in front of the colon");
  if (colon + 1 == line_.length()) return readBlock(std::move(tag));
  const SString::Size start = line_.findFirstNotOf(kWhitespace, colon + 1);
  tag.values.push_back(valueFrom(tag.name, start));
  keep(std::move(tag));
}

void TagTextReader::readBlock(TextTag tag) {
  bool closed = false;
  while (!closed && nextLine()) {
    if (line_.isEmpty()) continue;
    closed = line_ == kBlockEnd || isMisspeltBlockEnd(line_);
    const std::optional<std::string> next = knownTagOnLine();
    if (line_ != kBlockEnd && closed) {
      error("missing-block-end",
            "a block ends with \"/:\" alone in its line, not with " + quotedName(line_.view()));
    } else if (next) {
      noteBlockEnd(tag, "before line " + std::to_string(number_) + ", where " + *next + " begins");
      again_ = closed = true;
    } else if (!closed) {
      tag.values.push_back(valueFrom(tag.name, 0));
    }
  }
  if (!closed) noteBlockEnd(tag, "up to the end of the file");
  keep(std::move(tag));
}

void TagTextReader::noteBlockEnd(const TextTag& tag, const std::string& reason) {
  findings_.error(text_.file(), tag.line, "missing-block-end",
                  "the block of " + printable(tag.name) + " has no \"/:\" " + reason +
                      ": end it with a line \"/:\", or write a single value behind the colon");
}

/// A tag inside a block is one that the author did not mean to be a value.
std::optional<std::string> TagTextReader::knownTagOnLine() const {
  const SString::Size colon = line_.find(':');
  if (colon == SString::npos) return std::nullopt;
  const std::string name = str(trimmed(line_.substr(0, colon)));
  if (findTagRule(kind_, name) == nullptr) return std::nullopt;
  return name;
}

TextValue TagTextReader::valueFrom(const std::string& tag, SString::Size start) {
  const std::string raw = str(line_.substr(start));
  if (line_.at(start) != '"') return {raw, number_, raw};
  SString value;
  SString::Size position = start + 1;
  try {
    nextArgument(value, line_, position, ArgumentForm::Quoted);
  } catch (const LauncherException&) {
    error("unclosed-quote",
          "the double quote is not closed; a quote inside is written twice: \"\"");
    return {raw.substr(1), number_, raw.substr(1)};
  }
  if (position == SString::npos) return {str(value), number_, str(value)};
  reportBehindQuote(tag, trimmed(line_.substr(position)).view());
  return {str(value), number_, raw};
}

void TagTextReader::reportBehindQuote(const std::string& tag, std::string_view behind) {
  std::string advice = "put all of it between the quotes, and double each quote inside";
  if (tag == "COMMAND") {
    advice += ", or begin the command with a word, such as exec";
  }
  error("text-behind-quote",
        "the value ends at its closing quote, so " + quotedName(behind) + " is ignored: " + advice);
}

void TagTextReader::keep(TextTag tag) {
  if (tag.values.empty()) {
    findings_.error(text_.file(), tag.line, "empty-block",
                    printable(tag.name) + " has no value: write one, or \"\" for an empty one");
    return;
  }
  text_.add(std::move(tag));
}

}  // namespace

const TextTag* TagText::find(std::string_view name) const {
  const TextTag* found = nullptr;
  for (const TextTag& tag : tags_) {
    if (tag.name == name) found = &tag;
  }
  return found;
}

const TextValue* TagText::value(std::string_view name) const {
  const TextTag* tag = find(name);
  return tag == nullptr ? nullptr : &tag->values.front();
}

std::string TagText::textOf(std::string_view name) const {
  const TextValue* found = value(name);
  return found == nullptr ? "" : found->text;
}

const std::vector<TextValue>& TagText::valuesOf(std::string_view name) const {
  static const std::vector<TextValue> none;
  const TextTag* tag = find(name);
  return tag == nullptr ? none : tag->values;
}

TagText readTagText(const std::string& file, std::string_view bytes, TextKind kind,
                    Findings& findings) {
  const std::optional<std::string_view> body = checkEncoding(file, bytes, findings);
  if (!body) {
    TagText text(file);
    text.setUnreadable();
    return text;
  }
  return TagTextReader(file, *body, kind, findings).read();
}

}  // namespace vessant
