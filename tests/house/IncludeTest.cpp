// Data flows down: a room includes only what the table in docs/design.md allows, and no file leads
// back to itself.

#include <functional>
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "house/SourceTree.h"
#include "support/BuildPaths.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using Rules = std::map<std::string, std::set<std::string>>;

std::vector<std::string> cellsOf(const std::string& row) {
  std::vector<std::string> cells;
  std::istringstream stream(row);
  for (std::string cell; std::getline(stream, cell, '|');) {
    const std::size_t first = cell.find_first_not_of(' ');
    const std::size_t last = cell.find_last_not_of(' ');
    cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
  }
  return cells;
}

std::set<std::string> roomsIn(const std::string& cell) {
  std::set<std::string> rooms;
  std::istringstream stream(cell);
  for (std::string room; std::getline(stream >> std::ws, room, ',');) rooms.insert(room);
  return rooms;
}

/// The rows of the first table of the design page.
Rules readRules() {
  Rules rules;
  std::istringstream page(readFile(std::string(kSourceDir) + "/docs/design.md"));
  for (std::string line; std::getline(page, line);) {
    const bool isRow = line.starts_with("| ") && !line.starts_with("| room |");
    if (isRow) rules[cellsOf(line).at(1)] = roomsIn(cellsOf(line).at(2));
  }
  return rules;
}

TEST(Includes, TableNamesEveryRoom) {
  const Rules rules = readRules();
  for (const SourceFile& file : sourceFiles()) {
    EXPECT_TRUE(rules.contains(file.room())) << file.path;
  }
}

TEST(Includes, RoomsKnowNoMoreThanTheTableAllows) {
  const Rules rules = readRules();
  int checked = 0;
  for (const SourceFile& file : sourceFiles()) {
    for (const std::string& include : file.includes()) {
      const std::string room = roomOf(include);
      if (room == file.room()) continue;
      EXPECT_TRUE(rules.at(file.room()).contains(room)) << file.path << " includes " << include;
      ++checked;
    }
  }
  EXPECT_GT(checked, 100) << "the includes were not found";
}

TEST(Includes, NothingBelowTheDriverKnowsTheRun) {
  for (const SourceFile& file : sourceFiles()) {
    if (file.room() == "driver") continue;
    EXPECT_THAT(file.includes(),
                testing::Not(testing::Contains(testing::AnyOf(testing::HasSubstr("LauncherState"),
                                                              testing::HasSubstr("LauncherMain")))))
        << file.path;
  }
}

TEST(Includes, NoUnitLeadsBackToItself) {
  std::map<std::string, std::set<std::string>> edges;
  for (const SourceFile& file : sourceFiles()) {
    for (const std::string& include : file.includes()) {
      const std::string unit = SourceFile{include, {}}.unit();
      if (unit != file.unit()) edges[file.unit()].insert(unit);
    }
  }
  std::set<std::string> done;
  std::vector<std::string> path;
  const std::function<void(const std::string&)> visit = [&](const std::string& unit) {
    const bool isOnPath = std::find(path.begin(), path.end(), unit) != path.end();
    ASSERT_FALSE(isOnPath) << unit << " leads back to itself: " << testing::PrintToString(path);
    if (done.contains(unit)) return;
    path.push_back(unit);
    for (const std::string& next : edges[unit]) visit(next);
    path.pop_back();
    done.insert(unit);
  };
  std::vector<std::string> units;
  for (const auto& [unit, next] : edges) units.push_back(unit);
  for (const std::string& unit : units) visit(unit);
}

}  // namespace
}  // namespace vessant::test
