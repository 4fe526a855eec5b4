#include "packer/jvm/TagLines.h"

namespace vessant {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kBlockEnd = "/:";

bool needsQuotes(std::string_view value) {
  return value.empty() || value.front() == '"' || value == kBlockEnd ||
         kBlanks.find(value.front()) != std::string_view::npos ||
         kBlanks.find(value.back()) != std::string_view::npos;
}

}  // namespace

std::string tagValue(std::string_view value) {
  if (!needsQuotes(value)) return std::string(value);
  std::string text = "\"";
  for (const char character : value) {
    text += character;
    if (character == '"') text += character;
  }
  return text + '"';
}

std::string tagLine(std::string_view name, std::string_view value) {
  return std::string(name) + ": " + tagValue(value) + "\n";
}

std::string tagBlock(std::string_view name, const std::vector<std::string>& values) {
  if (values.empty()) return "";
  std::string text = std::string(name) + ":\n";
  for (const std::string& value : values) text += "  " + tagValue(value) + "\n";
  return text.append(kBlockEnd) + "\n";
}

}  // namespace vessant
