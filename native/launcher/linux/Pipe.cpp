#include "launcher/linux/Pipe.h"

#include <fcntl.h>

namespace vessant {

bool Pipe::open() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) return false;
  readEnd.reset(ends[0]);
  writeEnd.reset(ends[1]);
  return true;
}

}  // namespace vessant
