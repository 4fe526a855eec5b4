#include "support/AllocationWatch.h"

namespace {

vessant::test::AllocationWatch* activeWatch = nullptr;

}  // namespace

extern "C" {
// The linker's names for the functions themselves and for what stands in their place. An optimising
// compiler turns a realloc of nothing into malloc.
void* __real_malloc(std::size_t size);                // NOLINT(bugprone-reserved-identifier)
void* __real_realloc(void* block, std::size_t size);  // NOLINT(bugprone-reserved-identifier)

void* __wrap_malloc(std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  if (activeWatch != nullptr && activeWatch->note(size)) return nullptr;
  return __real_malloc(size);
}

void* __wrap_realloc(void* block, std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  if (activeWatch != nullptr && activeWatch->note(size)) return nullptr;
  return __real_realloc(block, size);
}
}

namespace vessant::test {

AllocationWatch::AllocationWatch() {
  activeWatch = this;
}

AllocationWatch::~AllocationWatch() {
  activeWatch = nullptr;
}

bool AllocationWatch::note(std::size_t size) {
  sizes_.push_back(size);
  if (failures_ == 0) return false;
  --failures_;
  return true;
}

}  // namespace vessant::test
