// A payload that counts how many of its kind are alive.
#pragma once

namespace vessant::test {

struct Tracked {
  explicit Tracked(int givenNumber) : number(givenNumber) { ++alive; }
  Tracked(const Tracked&) = delete;
  Tracked& operator=(const Tracked&) = delete;
  ~Tracked() { --alive; }

  int number;
  static inline int alive = 0;
};

}  // namespace vessant::test
