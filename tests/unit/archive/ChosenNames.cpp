#include "ChosenNames.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include <dlfcn.h>

namespace vessant::test {
namespace {

ChosenNames* chosen = nullptr;

}  // namespace

ChosenNames::ChosenNames(std::deque<std::string> names) : names_(std::move(names)) {
  chosen = this;
}

ChosenNames::~ChosenNames() {
  chosen = nullptr;
}

char* ChosenNames::next() {
  ++asked_;
  if (names_.empty()) {
    errno = ENOMEM;
    return nullptr;
  }
  char* name = ::strdup(names_.front().c_str());
  names_.pop_front();
  return name;
}

}  // namespace vessant::test

// Stands in front of the C library's function in the whole test program.
extern "C" char* tempnam(const char* directory, const char* prefix) noexcept {
  using Original = char* (*)(const char*, const char*);
  static const auto original = reinterpret_cast<Original>(::dlsym(RTLD_NEXT, "tempnam"));
  if (vessant::test::chosen != nullptr) return vessant::test::chosen->next();
  return original(directory, prefix);
}
