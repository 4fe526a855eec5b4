#include "packer/ManifestLine.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>
#include <vector>

#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "packer/FileKinds.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// A word or a quoted text.
struct Field {
  std::string text;
  bool quoted = false;
};

Field nextField(const SString& line, SString::Size& position) {
  SString text;
  if (line.at(position) != '"') {
    nextWord(text, line, position);
    return {str(text), false};
  }
  ++position;
  try {
    nextArgument(text, line, position, ArgumentForm::Quoted);
  } catch (const LauncherException&) {
    throw ManifestMistake{"unclosed-quote",
                          "a double quote is not closed; a quote inside is written twice: \"\""};
  }
  return {str(text), true};
}

std::vector<Field> fieldsOf(const std::string& text) {
  const SString line = sstr(text);
  std::vector<Field> fields;
  SString::Size position = 0;
  while (position < line.length()) {
    position = line.findFirstNotOf(kWhitespace, position);
    if (position == SString::npos) break;
    fields.push_back(nextField(line, position));
  }
  return fields;
}

FileType readKind(const std::string& word) {
  const std::vector<std::string> names = fileTypeNames();
  const auto found = std::find(names.begin(), names.end(), word);
  if (found == names.end()) {
    throw ManifestMistake{"bad-kind",
                          "unknown kind of file " + quotedName(word) + suggestion(word, names)};
  }
  return static_cast<FileType>(found - names.begin());
}

bool isNumberLike(const Field& field) {
  const std::string_view text = field.text;
  const std::size_t start = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  return !field.quoted && start < text.size() &&
         text.find_first_not_of("0123456789", start) == std::string_view::npos;
}

template <class Number>
bool readWhole(std::string_view text, Number& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

/// Scripts read ids as signed numbers, so those above their range could not be named.
std::uint32_t readId(const std::string& text) {
  std::int32_t id = -1;
  if (!readWhole(text, id) || id < 0 || std::to_string(id) != text) {
    throw ManifestMistake{"bad-id",
                          "the id must be a number from 0 to 2147483647, not " + quotedName(text)};
  }
  return static_cast<std::uint32_t>(id);
}

/// Takes the last field off when it tells what the file unpacks to.
std::optional<SizeInformation> takeUnpacks(std::vector<Field>& fields) {
  if (fields.back().quoted || !fields.back().text.starts_with(kUnpacksWord)) return std::nullopt;
  const std::string word = fields.back().text;
  fields.pop_back();
  const auto unpacks = readSizeInformation(std::string_view(word).substr(kUnpacksWord.size()));
  if (!unpacks) {
    throw ManifestMistake{"bad-unpacks", quotedName(word) +
                                             " must be unpacks=FILES:BYTES, both numbers from 0 to "
                                             "4294967295"};
  }
  return unpacks;
}

}  // namespace

ManifestLine readManifestLine(const std::string& text) {
  std::vector<Field> fields = fieldsOf(text);
  if (fields.empty()) throw ManifestMistake{"missing-path", "a kind and a path must stand here"};
  ManifestLine line;
  line.type = readKind(fields.front().text);
  line.unpacks = takeUnpacks(fields);
  std::size_t next = 1;
  if (next < fields.size() && isNumberLike(fields[next])) line.id = readId(fields[next++].text);
  if (next == fields.size()) {
    throw ManifestMistake{"missing-path",
                          line.id ? "a path must follow the id" : "a path must follow the kind"};
  }
  line.path = fields[next++].text;
  if (next < fields.size()) line.name = fields[next++].text;
  if (next < fields.size()) {
    throw ManifestMistake{"extra-words", "there is more than kind, id, path and name: " +
                                             quotedName(fields[next].text)};
  }
  return line;
}

std::optional<SizeInformation> readSizeInformation(std::string_view text) {
  SizeInformation sizes;
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return std::nullopt;
  const bool isGood = readWhole(text.substr(0, colon), sizes.files) &&
                      readWhole(text.substr(colon + 1), sizes.bytes);
  return isGood ? std::optional(sizes) : std::nullopt;
}

}  // namespace vessant
