#include "packer/LineDiff.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace vessant {
namespace {

using Lines = std::vector<std::string_view>;

constexpr std::size_t kContext = 3;
/// Texts that differ in more lines are shown as replaced: the search grows with the square.
constexpr std::ptrdiff_t kMostEdits = 2000;

/// A line that both have, or that only one has.
struct Edit {
  char sign;
  std::string_view line;
};

/// Each line with its end.
Lines linesOf(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

/// The shortest way from one list of lines to the other, after E. W. Myers, "An O(ND) Difference
/// Algorithm and Its Variations": for every number of edits the furthest point of each diagonal.
class ShortestWay {
 public:
  ShortestWay(const Lines& before, const Lines& after) : before_(before), after_(after) {}

  [[nodiscard]] std::vector<Edit> edits();

 private:
  using Furthest = std::vector<std::ptrdiff_t>;

  [[nodiscard]] bool advance(std::ptrdiff_t edits, Furthest& furthest) const;
  [[nodiscard]] bool comesFromAbove(std::ptrdiff_t diagonal, std::ptrdiff_t edits,
                                    const Furthest& furthest) const;
  [[nodiscard]] std::vector<Edit> walkBack() const;
  [[nodiscard]] std::vector<Edit> replaceAll() const;
  [[nodiscard]] static std::size_t place(std::ptrdiff_t diagonal) {
    return static_cast<std::size_t>(diagonal + kMostEdits + 1);
  }

  const Lines& before_;
  const Lines& after_;
  std::vector<Furthest> history_;
};

std::vector<Edit> ShortestWay::edits() {
  Furthest furthest(2 * kMostEdits + 3, 0);
  for (std::ptrdiff_t edits = 0; edits <= kMostEdits; ++edits) {
    const std::size_t first = place(-edits - 1);
    history_.emplace_back(furthest.begin() + static_cast<std::ptrdiff_t>(first),
                          furthest.begin() + static_cast<std::ptrdiff_t>(place(edits + 1)) + 1);
    if (advance(edits, furthest)) return walkBack();
  }
  return replaceAll();
}

/// Whether the best way to a diagonal adds a line of the new text, and does not drop an old one.
bool ShortestWay::comesFromAbove(std::ptrdiff_t diagonal, std::ptrdiff_t edits,
                                 const Furthest& furthest) const {
  const auto at = [&furthest, edits](std::ptrdiff_t d) {
    return furthest[static_cast<std::size_t>(d + edits + 1)];
  };
  return diagonal == -edits || (diagonal != edits && at(diagonal - 1) < at(diagonal + 1));
}

/// Goes one edit further on every diagonal. Returns whether the end was reached.
bool ShortestWay::advance(std::ptrdiff_t edits, Furthest& furthest) const {
  const auto oldCount = static_cast<std::ptrdiff_t>(before_.size());
  const auto newCount = static_cast<std::ptrdiff_t>(after_.size());
  for (std::ptrdiff_t diagonal = -edits; diagonal <= edits; diagonal += 2) {
    const bool above = comesFromAbove(diagonal, edits, history_.back());
    std::ptrdiff_t x = above ? furthest[place(diagonal + 1)] : furthest[place(diagonal - 1)] + 1;
    std::ptrdiff_t y = x - diagonal;
    while (x < oldCount && y < newCount &&
           before_[static_cast<std::size_t>(x)] == after_[static_cast<std::size_t>(y)]) {
      ++x;
      ++y;
    }
    furthest[place(diagonal)] = x;
    if (x >= oldCount && y >= newCount) return true;
  }
  return false;
}

std::vector<Edit> ShortestWay::walkBack() const {
  std::vector<Edit> edits;
  auto x = static_cast<std::ptrdiff_t>(before_.size());
  auto y = static_cast<std::ptrdiff_t>(after_.size());
  for (auto count = static_cast<std::ptrdiff_t>(history_.size()) - 1; count >= 0; --count) {
    const Furthest& furthest = history_[static_cast<std::size_t>(count)];
    const std::ptrdiff_t diagonal = x - y;
    const bool above = comesFromAbove(diagonal, count, furthest);
    const std::ptrdiff_t from = above ? diagonal + 1 : diagonal - 1;
    const std::ptrdiff_t startX = furthest[static_cast<std::size_t>(from + count + 1)];
    const std::ptrdiff_t startY = startX - from;
    const bool isFirst = count == 0;
    while (isFirst ? x > 0 : x > startX + (above ? 0 : 1)) {
      edits.push_back({' ', before_[static_cast<std::size_t>(--x)]});
      --y;
    }
    if (isFirst) break;
    if (above) edits.push_back({'+', after_[static_cast<std::size_t>(startY)]});
    if (!above) edits.push_back({'-', before_[static_cast<std::size_t>(startX)]});
    x = startX;
    y = startY;
  }
  std::reverse(edits.begin(), edits.end());
  return edits;
}

std::vector<Edit> ShortestWay::replaceAll() const {
  std::vector<Edit> edits;
  for (const std::string_view line : before_) edits.push_back({'-', line});
  for (const std::string_view line : after_) edits.push_back({'+', line});
  return edits;
}

/// Where a hunk begins and how long it is, on one side. A side without lines counts from 0.
std::string rangeText(std::size_t start, std::size_t count) {
  const std::string first = std::to_string(count == 0 ? start : start + 1);
  return count == 1 ? first : first + "," + std::to_string(count);
}

class HunkWriter {
 public:
  explicit HunkWriter(const std::vector<Edit>& edits) : edits_(edits) {}

  [[nodiscard]] std::string write();

 private:
  [[nodiscard]] std::size_t endOfHunk(std::size_t first) const;
  void writeHunk(std::size_t begin, std::size_t end);
  [[nodiscard]] std::size_t count(std::size_t begin, std::size_t end, char other) const;

  const std::vector<Edit>& edits_;
  std::string text_;
};

std::string HunkWriter::write() {
  for (std::size_t i = 0; i < edits_.size();) {
    if (edits_[i].sign == ' ') {
      ++i;
      continue;
    }
    const std::size_t end = endOfHunk(i);
    writeHunk(i - std::min(i, kContext), std::min(end + kContext, edits_.size()));
    i = end;
  }
  return text_;
}

/// Changes with little between them share a hunk.
std::size_t HunkWriter::endOfHunk(std::size_t first) const {
  std::size_t end = first;
  for (std::size_t i = first; i < edits_.size() && i <= end + 2 * kContext; ++i) {
    if (edits_[i].sign != ' ') end = i + 1;
  }
  return end;
}

/// The lines of one side: those that are not only the other's.
std::size_t HunkWriter::count(std::size_t begin, std::size_t end, char other) const {
  std::size_t lines = 0;
  for (std::size_t i = begin; i < end; ++i) lines += edits_[i].sign == other ? 0 : 1;
  return lines;
}

void HunkWriter::writeHunk(std::size_t begin, std::size_t end) {
  text_ += "@@ -" + rangeText(count(0, begin, '+'), count(begin, end, '+')) + " +" +
           rangeText(count(0, begin, '-'), count(begin, end, '-')) + " @@\n";
  for (std::size_t i = begin; i < end; ++i) {
    text_ += edits_[i].sign;
    text_ += edits_[i].line;
    if (!edits_[i].line.ends_with('\n')) text_ += "\n\\ No newline at end of file\n";
  }
}

}  // namespace

std::string unifiedDiff(const DiffNames& names, const std::string& before,
                        const std::string& after) {
  if (before == after) return "";
  const Lines oldLines = linesOf(before);
  const Lines newLines = linesOf(after);
  const std::vector<Edit> edits = ShortestWay(oldLines, newLines).edits();
  return "--- " + names.before + "\n+++ " + names.after + "\n" + HunkWriter(edits).write();
}

}  // namespace vessant
