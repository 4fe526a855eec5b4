// The picture of the rooms in docs/design.md, drawn from what the sources include.
#pragma once

#include <string>

#include "house/Rooms.h"

namespace vessant::test {

/// An SVG text: a box for each room, each floor on a line of its own, and an arrow for each include
/// that does not follow from others.
[[nodiscard]] std::string roomPicture(const RoomArrows& arrows);

}  // namespace vessant::test
