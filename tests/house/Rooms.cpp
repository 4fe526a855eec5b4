#include "house/Rooms.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "house/SourceTree.h"
#include "support/BuildPaths.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

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

}  // namespace

RoomTable readRoomTable() {
  RoomTable table;
  std::istringstream page(readFile(std::string(kSourceDir) + "/docs/design.md"));
  std::string line;
  while (std::getline(page, line) && !line.starts_with("| room |")) continue;
  while (std::getline(page, line) && line.starts_with("|")) {
    const std::vector<std::string> cells = cellsOf(line);
    if (!line.starts_with("|--")) table[cells.at(1)] = roomsIn(cells.at(2));
  }
  return table;
}

std::string roomOf(const RoomTable& table, const std::string& path) {
  const std::string launcher = "launcher/";
  const std::string below = path.starts_with(launcher) ? path.substr(launcher.size()) : path;
  const std::filesystem::path own = std::filesystem::path(below).parent_path();
  for (std::filesystem::path room = own; !room.empty(); room = room.parent_path()) {
    if (table.contains(room.string())) return room.string();
  }
  return own.string();
}

RoomArrows roomArrows() {
  const RoomTable table = readRoomTable();
  RoomArrows arrows;
  for (const SourceFile& file : sourceFiles()) {
    const std::string room = roomOf(table, file.path);
    std::set<std::string>& below = arrows[room];
    for (const std::string& include : file.includes()) {
      const std::string other = roomOf(table, include);
      if (other != room) below.insert(other);
    }
  }
  return arrows;
}

RoomArrows directArrows(const RoomArrows& arrows) {
  const std::function<bool(const std::string&, const std::string&)> leadsTo =
      [&](const std::string& from, const std::string& to) {
        const std::set<std::string>& below = arrows.at(from);
        return below.contains(to) || std::any_of(below.begin(), below.end(), [&](const auto& room) {
                 return leadsTo(room, to);
               });
      };
  RoomArrows direct;
  for (const auto& [room, below] : arrows) {
    direct[room];
    for (const std::string& target : below) {
      const bool follows = std::any_of(below.begin(), below.end(), [&](const auto& other) {
        return other != target && leadsTo(other, target);
      });
      if (!follows) direct[room].insert(target);
    }
  }
  return direct;
}

std::map<std::string, int> floorsOf(const RoomArrows& arrows) {
  const std::size_t deepest = arrows.size();
  const std::function<std::size_t(const std::string&, std::size_t)> heightOf =
      [&](const std::string& room, std::size_t depth) {
        if (depth > deepest) throw std::runtime_error(room + " leads back to itself");
        std::size_t height = 0;
        for (const std::string& below : arrows.at(room)) {
          height = std::max(height, heightOf(below, depth + 1) + 1);
        }
        return height;
      };
  std::map<std::string, int> floors;
  for (const auto& [room, below] : arrows) floors[room] = static_cast<int>(heightOf(room, 0));
  return floors;
}

}  // namespace vessant::test
