#include "packer/explain/RunArguments.h"

#include <map>

#include "packer/Text.h"

namespace vessant {
namespace {

constexpr const char* kConsole = "-console";

using TextOption = SString RunArguments::*;

/// Options with a value that matters here, and those whose value does not.
const std::map<std::string, TextOption>& optionsWithValue() {
  static const std::map<std::string, TextOption> options = {
      {"-vs:javahome", &RunArguments::javaHome},
      {"-vs:tempdir", &RunArguments::tempDirectory},
      {"-cp:p", &RunArguments::classPathPrefix},
      {"-cp:a", &RunArguments::classPathSuffix},
      {"-vs:log", nullptr},
      {"-vs:orig", nullptr},
      {"-vs:in", nullptr},
  };
  return options;
}

bool isOtherAction(const std::string& word) {
  return word == "-vs:in" || word == "-vs:extract" || word == "-vs:version";
}

void readFlag(const std::string& word, RunArguments& run) {
  if (word == "-vs:silent" || word == "-vs:extract" || word == "-vs:version") return;
  const bool isConsole = word == kConsole || word == "-accessibility";
  if (isConsole || word == "-vs:javaconsole") run.javaConsole = true;
  if (word == "-vs:javaconsole") return;
  run.passThrough.add(isConsole ? SString(kConsole) : sstr(word));
}

}  // namespace

void readRunArguments(const std::vector<std::string>& words, RunArguments& run) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (isOtherAction(words[i])) run.otherActions.push_back(words[i]);
    const auto option = optionsWithValue().find(words[i]);
    if (option == optionsWithValue().end()) {
      readFlag(words[i], run);
      continue;
    }
    if (i + 1 == words.size()) continue;
    ++i;
    if (option->second != nullptr) run.*(option->second) = sstr(words[i]);
  }
}

}  // namespace vessant
