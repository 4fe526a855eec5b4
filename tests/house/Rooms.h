// The rooms of the house: what the design page allows them, and what they really include.
#pragma once

#include <map>
#include <set>
#include <string>

namespace vessant::test {

/// What each room may know.
using RoomTable = std::map<std::string, std::set<std::string>>;
/// What each room includes of others.
using RoomArrows = std::map<std::string, std::set<std::string>>;

/// The rows of the first table of docs/design.md.
[[nodiscard]] RoomTable readRoomTable();

/// The room of a path below native/: the nearest directory above it that the table names; when it
/// names none, the path's own directory.
[[nodiscard]] std::string roomOf(const RoomTable& table, const std::string& path);

[[nodiscard]] RoomArrows roomArrows();

/// The arrows without those that follow from others.
[[nodiscard]] RoomArrows directArrows(const RoomArrows& arrows);

/// How many arrows lie one behind the other at most until nothing is below. Throws when a room
/// leads back to itself.
[[nodiscard]] std::map<std::string, int> floorsOf(const RoomArrows& arrows);

}  // namespace vessant::test
