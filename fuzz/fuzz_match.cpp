// What a candidate answers: the input's first line is the required properties, divided by "|", and
// the rest is what the candidate wrote.

#include "FuzzInput.h"
#include "launcher/jvm/JVMVerification.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const vessant::fuzz::FirstLine input(data, size);
  vessant::TagFile tags;
  const vessant::SString& line = input.line;
  vessant::SString::Size start = 0;
  while (start < line.length()) {
    const vessant::SString::Size bar = line.find('|', start);
    const vessant::SString::Size end = bar == vessant::SString::npos ? line.length() : bar;
    tags.addValue("JVM_PROPERTIES", line.substr(start, end - start));
    start = end + 1;
  }
  vessant::fuzz::QuietRun run;
  vessant::StringPairPtrDeque expected;
  vessant::readExpectedProperties(tags, expected, run.services.log);
  const vessant::SString output = vessant::fuzz::textOf(input.rest, input.restSize);
  static_cast<void>(vessant::readAnswer(output, expected, run.services.log));
  return 0;
}
