#include "house/Sizes.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "house/CodeReader.h"

namespace vessant::test {
namespace {

constexpr std::size_t kShortFile = 60;

std::size_t fullLines(const SourceFile& file) {
  return static_cast<std::size_t>(std::count_if(
      file.lines.begin(), file.lines.end(),
      [](const std::string& line) { return line.find_first_not_of(' ') != std::string::npos; }));
}

std::string number(double value, const char* form) {
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), form, value);
  return text.data();
}

std::string spreadCell(const Spread& spread) {
  return std::to_string(spread.median) + " / " + std::to_string(spread.p90) + " / " +
         std::to_string(spread.longest);
}

std::string underCell(const Sizes& sizes) {
  return std::to_string(sizes.filesUnder60) + " of " + std::to_string(sizes.files.count);
}

using Cell = std::string (*)(const Sizes& sizes);

struct Row {
  const char* title;
  Cell cell;
};

constexpr Row kRows[] = {
    {"lines", [](const Sizes& sizes) { return std::to_string(sizes.lines); }},
    {"functions", [](const Sizes& sizes) { return std::to_string(sizes.functions.count); }},
    {"lines a function: median / p90 / longest",
     [](const Sizes& sizes) { return spreadCell(sizes.functions); }},
    {"lines a file: median / p90 / longest",
     [](const Sizes& sizes) { return spreadCell(sizes.files); }},
    {"files under 60 lines", underCell},
    {"comment lines", [](const Sizes& sizes) { return number(sizes.comments, "%.1f %%"); }},
};

}  // namespace

Spread spreadOf(std::vector<std::size_t> values) {
  if (values.empty()) return {};
  std::sort(values.begin(), values.end());
  return {values.size(), values[values.size() / 2], values[values.size() * 9 / 10], values.back()};
}

Sizes sizesOf(const std::vector<SourceFile>& files) {
  std::vector<std::size_t> functions;
  std::vector<std::size_t> lengths;
  std::size_t comments = 0;
  std::size_t full = 0;
  Sizes sizes;
  for (const SourceFile& file : files) {
    for (const auto& function : outlineOf(file.lines).functions) {
      functions.push_back(function.length());
    }
    lengths.push_back(file.lines.size());
    comments += commentLines(file.lines);
    full += fullLines(file);
    sizes.lines += file.lines.size();
    sizes.filesUnder60 += file.lines.size() < kShortFile ? 1 : 0;
  }
  sizes.functions = spreadOf(std::move(functions));
  sizes.files = spreadOf(std::move(lengths));
  sizes.comments =
      full == 0 ? 0 : 100.0 * static_cast<double>(comments) / static_cast<double>(full);
  return sizes;
}

std::string sizeTable() {
  const Sizes launcher = sizesOf(sourceFiles("native/launcher"));
  const Sizes packer = sizesOf(sourceFiles("native/packer"));
  const Sizes code = sizesOf(sourceFiles("native"));
  const Sizes tests = sizesOf(sourceFiles("tests"));
  std::string table = "| | launcher | packer | tests |\n|---|---|---|---|\n";
  for (const Row& row : kRows) {
    table += std::string("| ") + row.title + " | " + row.cell(launcher) + " | " + row.cell(packer) +
             " | " + row.cell(tests) + " |\n";
  }
  const double ratio = static_cast<double>(tests.lines) / static_cast<double>(code.lines);
  return table + "\nLines of tests to a line of code: " + number(ratio, "%.1f") + "\n";
}

}  // namespace vessant::test
