#include "packer/explain/VerificationAnswer.h"

#include "launcher/base/Readers.h"
#include "launcher/jvm/VerificationProtocol.h"
#include "packer/NoLog.h"
#include "packer/Text.h"

namespace vessant {
namespace {

/// The line behind which the values stand.
constexpr const char* kMagicLine = "1739021872";

/// The launcher's judgement.
bool isExpected(const SString& output, const StringPairPtrDeque& expected) {
  NoLog log;
  return matchesExpected(output, expected, log);
}

/// The same for one property alone.
bool isRight(const std::string& got, const StringPair& property) {
  StringPairPtrDeque one;
  auto pair = std::make_unique<StringPair>();
  pair->name = property.name;
  pair->value = property.value;
  one.add(std::move(pair));
  return isExpected(SString(kMagicLine) + "\n" + sstr(got) + "\n", one);
}

/// The lines behind the magic one, or nothing when that is not there.
std::optional<std::vector<std::string>> valuesIn(const SString& output) {
  std::optional<std::vector<std::string>> values;
  SString::Size position = 0;
  while (position < output.length()) {
    SString line;
    readLine(output, position, line);
    if (values) {
      values->push_back(str(line));
    } else if (line == kMagicLine) {
      values.emplace();
    }
  }
  return values;
}

}  // namespace

HomeAnswer answerOf(const NotedCommand& command, const TagFile& tags) {
  const SString output = sstr(command.output);
  NoLog log;
  StringPairPtrDeque expected;
  readExpectedProperties(tags, expected, log);
  const auto values = valuesIn(output);
  HomeAnswer answer{
      command.command, command.status, values.has_value(), isExpected(output, expected), {},
      command.errors};
  std::size_t index = 0;
  for (const StringPair& property : expected) {
    PropertyAnswer line{str(property.name), str(property.value)};
    if (values && index < values->size()) line.got = (*values)[index];
    line.isRight = line.got && isRight(*line.got, property);
    answer.properties.push_back(std::move(line));
    ++index;
  }
  return answer;
}

}  // namespace vessant
