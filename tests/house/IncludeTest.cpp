// Data flows down: a room includes only what the table in docs/design.md allows, no file leads back
// to itself, and the picture of the rooms shows what is so.

#include <functional>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "house/RoomPicture.h"
#include "house/Rooms.h"
#include "house/SourceTree.h"
#include "support/BuildPaths.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

TEST(Includes, TableNamesEveryRoom) {
  const RoomTable rules = readRoomTable();
  for (const SourceFile& file : sourceFiles()) {
    EXPECT_TRUE(rules.contains(roomOf(rules, file.path))) << file.path;
  }
}

TEST(Includes, RoomsKnowNoMoreThanTheTableAllows) {
  const RoomTable rules = readRoomTable();
  int checked = 0;
  for (const SourceFile& file : sourceFiles()) {
    const std::string own = roomOf(rules, file.path);
    for (const std::string& include : file.includes()) {
      const std::string room = roomOf(rules, include);
      if (room == own) continue;
      EXPECT_TRUE(rules.at(own).contains(room)) << file.path << " includes " << include;
      ++checked;
    }
  }
  EXPECT_GT(checked, 100) << "the includes were not found";
}

TEST(Includes, NothingBelowTheDriverKnowsTheRun) {
  const RoomTable rules = readRoomTable();
  for (const SourceFile& file : sourceFiles()) {
    if (roomOf(rules, file.path) == "driver") continue;
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

TEST(Includes, PictureShowsTheRoomsAsTheyAre) {
  EXPECT_EQ(readFile(std::string(kSourceDir) + "/docs/rooms.svg"), roomPicture(roomArrows()))
      << "docs/rooms.svg is out of date: run scripts/picture";
}

TEST(Includes, EveryArrowOfThePictureLeadsDown) {
  const RoomArrows arrows = roomArrows();
  const std::map<std::string, int> floors = floorsOf(arrows);
  for (const auto& [room, below] : arrows) {
    for (const std::string& other : below) EXPECT_GT(floors.at(room), floors.at(other)) << room;
  }
}

}  // namespace
}  // namespace vessant::test
