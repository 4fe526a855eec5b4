#include "support/SpoiledErrno.h"

#include <cerrno>

namespace {

bool isSpoiling = false;

}  // namespace

extern "C" {
// The linker's names for the function itself and for what stands in its place.
void __real_free(void* block);  // NOLINT(bugprone-reserved-identifier)

void __wrap_free(void* block) {  // NOLINT(bugprone-reserved-identifier)
  __real_free(block);
  if (isSpoiling) errno = EDOM;
}
}

namespace vessant::test {

SpoiledErrno::SpoiledErrno() {
  isSpoiling = true;
}

SpoiledErrno::~SpoiledErrno() {
  isSpoiling = false;
}

}  // namespace vessant::test
