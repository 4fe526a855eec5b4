// house_figures sizes      the table of sizes of HACKING.md
// house_figures picture    the picture of the rooms, docs/rooms.svg

#include <cstdio>
#include <exception>
#include <string>

#include "house/RoomPicture.h"
#include "house/Sizes.h"

namespace {

int print(const std::string& text) {
  return std::fputs(text.c_str(), stdout) < 0 ? 1 : 0;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string what = count == 2 ? arguments[1] : "";
  try {
    if (what == "sizes") return print(vessant::test::sizeTable());
    if (what == "picture") return print(vessant::test::roomPicture(vessant::test::roomArrows()));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return 1;
  }
  std::fputs("usage: house_figures sizes|picture\n", stderr);
  return 2;
}
