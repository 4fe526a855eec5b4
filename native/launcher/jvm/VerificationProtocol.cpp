#include "launcher/jvm/VerificationProtocol.h"

#include <memory>

#include "launcher/base/Readers.h"
#include "launcher/base/TextUtil.h"
#include "launcher/tagfile/JvmTagNames.h"

namespace vessant {
namespace {

constexpr std::string_view kMagicLine = "1739021872";
constexpr std::string_view kPrefixMark = "...";
/// A candidate that is no Java may answer with anything: the log gets so much of a line.
constexpr SString::Size kLongestShown = 200;

bool satisfies(const SString& line, const SString& expected) {
  const SString::Size prefixLength = endsWith(expected, kPrefixMark);
  if (prefixLength == SString::npos) return line == expected;
  return line.view().substr(0, prefixLength) == expected.view().substr(0, prefixLength);
}

SString difference(const StringPair& property, const SString& line) {
  const SString shown = line.isEmpty() ? SString("empty") : line.substr(0, kLongestShown);
  return property.name + " is " + shown + ", wanted " + property.value;
}

/// Moves behind the magic line; false, with an error in the log, when there is none.
bool skipToValues(const SString& output, SString::Size& position, LogSink& log) {
  SString line;
  while (position < output.length()) {
    line.erase();
    readLine(output, position, line);
    if (line == kMagicLine) return true;
  }
  log.log("Invalid magic value: " + line + "\n", LogLevel::Error);
  return false;
}

}  // namespace

void readExpectedProperties(const TagFile& tags, StringPairPtrDeque& expected, LogSink& log) {
  const StringDeque* settings = tags.findValues(jvmtag::kProperties);
  if (settings == nullptr) return;
  for (const SString& setting : *settings) {
    const SString::Size equals = setting.find('=');
    if (equals == SString::npos) {
      log.log(SString("Invalid ") + jvmtag::kProperties + " setting (" + setting + ") in JVM File ",
              LogLevel::Warning);
      continue;
    }
    auto pair = std::make_unique<StringPair>();
    pair->name = trimmed(setting.substr(0, equals));
    pair->value = trimmed(setting.substr(equals + 1));
    expected.add(std::move(pair));
  }
}

JVMAnswer readAnswer(const SString& output, const StringPairPtrDeque& expected, LogSink& log) {
  SString::Size position = 0;
  if (!skipToValues(output, position, log)) return {JVMAnswer::Kind::NoMagicLine};
  for (const StringPair& property : expected) {
    if (position >= output.length()) break;
    SString line;
    readLine(output, position, line);
    if (satisfies(line, property.value)) continue;
    return {JVMAnswer::Kind::Different, difference(property, line)};
  }
  return {};
}

}  // namespace vessant
