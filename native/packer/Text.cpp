#include "packer/Text.h"

#include <algorithm>
#include <cstddef>

#include <nlohmann/json.hpp>

namespace vessant {
namespace {

// A longer word is no slip of the fingers, and the table below grows with the square.
constexpr std::size_t kLongestWord = 64;

char lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                              : character;
}

bool equal(char a, char b) {
  return lower(a) == lower(b);
}

/// Some people stop typing when they think that the rest is clear.
bool isStartOf(std::string_view word, std::string_view candidate) {
  constexpr std::size_t kClearStart = 3;
  return word.size() >= kClearStart && word.size() < candidate.size() &&
         editDistance(word, candidate.substr(0, word.size())) == 0;
}

}  // namespace

std::string printable(std::string_view text) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  constexpr unsigned char kDelete = 0x7F;
  std::string result;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= ' ' && byte != kDelete) {
      result += character;
    } else {
      result += {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
    }
  }
  return result;
}

std::string quotedName(std::string_view text) {
  return '"' + printable(text) + '"';
}

std::string jsonText(const Json& json) {
  constexpr int kIndent = 2;
  return json.dump(kIndent, ' ', false, Json::error_handler_t::replace) + "\n";
}

int editDistance(std::string_view a, std::string_view b) {
  std::vector<std::vector<int>> steps(a.size() + 1, std::vector<int>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) steps[i][0] = static_cast<int>(i);
  for (std::size_t j = 0; j <= b.size(); ++j) steps[0][j] = static_cast<int>(j);
  for (std::size_t i = 1; i <= a.size(); ++i) {
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const int changed = steps[i - 1][j - 1] + (equal(a[i - 1], b[j - 1]) ? 0 : 1);
      steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, changed});
      const bool isSwap = i > 1 && j > 1 && equal(a[i - 1], b[j - 2]) && equal(a[i - 2], b[j - 1]);
      if (isSwap) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
    }
  }
  return steps[a.size()][b.size()];
}

std::optional<std::string> nearest(std::string_view word,
                                   const std::vector<std::string>& candidates) {
  if (word.empty() || word.size() > kLongestWord) return std::nullopt;
  std::optional<std::string> best;
  int allowed = std::max(1, static_cast<int>(word.size()) / 3) + 1;
  for (const std::string& candidate : candidates) {
    if (candidate.size() > kLongestWord) continue;
    const int distance = editDistance(word, candidate);
    if (distance >= allowed) continue;
    allowed = distance;
    best = candidate;
  }
  for (const std::string& candidate : candidates) {
    if (!best && isStartOf(word, candidate)) best = candidate;
  }
  return best;
}

std::string suggestion(std::string_view word, const std::vector<std::string>& candidates) {
  const std::optional<std::string> best = nearest(word, candidates);
  return best ? "; did you mean \"" + *best + "\"?" : "";
}

}  // namespace vessant
