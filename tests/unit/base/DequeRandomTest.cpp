// Long random sequences of changes to both kinds of lists, beside the standard deque.
#include <deque>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "launcher/base/Deque.h"
#include "support/FakeRun.h"
#include "unit/base/Tracked.h"

namespace vessant::test {
namespace {

class RandomLists {
 public:
  explicit RandomLists(unsigned seed) : random_(seed) {}

  void step() {
    switch (number(0, 9)) {
      case 0:
      case 1:
      case 2:
      case 3:
        return add();
      case 4:
      case 5:
        return insert(index());
      case 6:
      case 7:
        return removeAt(index());
      case 8:
        return removeLast();
      default:
        return number(0, 50) == 0 ? clear() : removeLast();
    }
  }

  void check() const {
    const auto count = static_cast<std::int32_t>(model_.size());
    ASSERT_EQ(objects_.count(), count);
    ASSERT_EQ(texts_.count(), count);
    ASSERT_EQ(Tracked::alive, count);
    ASSERT_GE(objects_.capacity(), count);
    ASSERT_EQ(objects_.capacity() % GenericDeque::kGrowthStep, 0);
    for (std::int32_t i = 0; i < count; ++i) {
      const int expected = model_[static_cast<std::size_t>(i)];
      ASSERT_EQ(objects_.get(i)->number, expected);
      ASSERT_EQ(str(texts_.get(i)), std::to_string(expected));
    }
  }

 private:
  int number(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(random_);
  }
  /// At times out of range, on either side.
  std::int32_t index() { return number(-2, static_cast<int>(model_.size()) + 1); }
  [[nodiscard]] bool isValid(std::int32_t index) const {
    return 0 <= index && index < static_cast<std::int32_t>(model_.size());
  }

  void add() {
    objects_.add(std::make_unique<Tracked>(++last_));
    texts_.add(lastAsText());
    model_.push_back(last_);
  }

  void insert(std::int32_t index) {
    objects_.insert(index, std::make_unique<Tracked>(++last_));
    texts_.insert(index, lastAsText());
    if (index < 0) model_.push_back(last_);
    if (isValid(index)) model_.insert(model_.begin() + index, last_);
  }

  void removeAt(std::int32_t index) {
    objects_.removeAt(index);
    texts_.removeAt(index);
    if (isValid(index)) model_.erase(model_.begin() + index);
  }

  void removeLast() {
    objects_.removeLast();
    texts_.removeLast();
    if (!model_.empty()) model_.pop_back();
  }

  void clear() {
    objects_.clear();
    texts_.clear();
    model_.clear();
  }

  [[nodiscard]] SString lastAsText() const {
    return SString(std::string_view(std::to_string(last_)));
  }

  std::mt19937 random_;
  PtrDeque<Tracked> objects_;
  StringDeque texts_;
  std::deque<int> model_;
  int last_ = 0;
};

TEST(DequeRandom, AgreesWithTheStandardDequeThroughRandomChanges) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    SCOPED_TRACE(seed);
    RandomLists lists(seed);
    for (int step = 0; step < 600; ++step) {
      lists.step();
      lists.check();
      if (testing::Test::HasFailure()) return;
    }
  }
  EXPECT_EQ(Tracked::alive, 0);
}

}  // namespace
}  // namespace vessant::test
