// Names that a test chooses for the C library's tempnam. While one of these lives it gives its
// names, in order, and then none; otherwise tempnam is the C library's own.
#pragma once

#include <deque>
#include <string>

namespace vessant::test {

class ChosenNames {
 public:
  explicit ChosenNames(std::deque<std::string> names);
  ChosenNames(const ChosenNames&) = delete;
  ChosenNames& operator=(const ChosenNames&) = delete;
  ~ChosenNames();

  /// The next name as tempnam returns it; null when there is none left.
  [[nodiscard]] char* next();
  /// How many names were asked for.
  [[nodiscard]] int asked() const { return asked_; }

 private:
  std::deque<std::string> names_;
  int asked_ = 0;
};

}  // namespace vessant::test
