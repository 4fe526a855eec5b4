// Long random sequences of changes to strings that share blocks, each beside a standard string.
#include <algorithm>
#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "launcher/base/SString.h"
#include "support/FakeRun.h"

namespace vessant::test {
namespace {

struct Pair {
  SString real;
  std::string model;
};

class RandomStrings {
 public:
  explicit RandomStrings(unsigned seed) : random_(seed) {}

  void step() {
    Pair& target = pairs_[below(pairs_.size())];
    const Pair& source = pairs_[below(pairs_.size())];
    switch (below(4)) {
      case 0:
        return assign(target, source);
      case 1:
        return append(target, source);
      case 2:
        return change(target, source);
      default:
        return reshape(target);
    }
  }

  void check() const {
    for (const Pair& pair : pairs_) {
      ASSERT_EQ(str(pair.real), pair.model);
      ASSERT_EQ(pair.real.cString()[pair.real.length()], '\0');
      ASSERT_GE(pair.real.capacity(), pair.real.length());
    }
  }

 private:
  std::size_t below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }
  SString::Size number() { return static_cast<SString::Size>(below(40)); }
  SString::Size positionIn(const std::string& text) {
    return static_cast<SString::Size>(below(text.size() + 2));  // at times one too far
  }
  char letter() { return static_cast<char>('a' + below(26)); }
  std::string word() { return std::string(below(6), letter()); }

  /// Runs both; the real one must refuse exactly the positions that the model refuses.
  template <class Real, class Model>
  void both(Real real, Model model) {
    bool refused = false;
    try {
      model();
    } catch (const std::out_of_range&) {
      refused = true;
    }
    if (refused) {
      EXPECT_THROW(real(), RangeException);
    } else {
      EXPECT_NO_THROW(real());
    }
  }

  void assign(Pair& target, const Pair& source) {
    const SString::Size count = number();
    const SString::Size position = positionIn(source.model);
    const std::string text = word();
    const char character = letter();
    switch (below(6)) {
      case 0:
        target.real = text, target.model = text;
        break;
      case 1:
        both([&] { target.real.assign(source.real, position, count); },
             [&] { target.model = std::string(source.model, position, count); });
        break;
      case 2:
        target.real.assign(count, character), target.model.assign(count, character);
        break;
      case 3:
        target.real = SString(source.real), target.model = source.model;
        break;
      default:
        target.real = source.real, target.model = std::string(source.model);
        break;
    }
  }

  void append(Pair& target, const Pair& source) {
    if (target.model.size() > 500) return;
    const SString::Size count = number();
    const SString::Size position = positionIn(source.model);
    const char character = letter();
    switch (below(4)) {
      case 0:
        target.real += character, target.model += character;
        break;
      case 1:
        both([&] { target.real.append(source.real, position, count); },
             [&] { target.model.append(std::string(source.model), position, count); });
        break;
      case 2:
        target.real.append(count, character), target.model.append(count, character);
        break;
      default:
        target.real += source.real, target.model += std::string(source.model);
        break;
    }
  }

  void change(Pair& target, const Pair& source) {
    const SString::Size position = positionIn(target.model);
    const SString::Size removed = number();
    const SString::Size added = number();
    const char character = letter();
    const std::string text = target.model.size() > 500 ? "" : source.model;
    const std::string_view view = text.empty() ? std::string_view() : source.real.view();
    switch (below(5)) {
      case 0:
        return both([&] { target.real.insert(position, view); },
                    [&] { target.model.insert(position, text); });
      case 1:
        return both([&] { target.real.insert(position, added, character); },
                    [&] { target.model.insert(position, added, character); });
      case 2:
        return both([&] { target.real.erase(position, removed); },
                    [&] { target.model.erase(position, removed); });
      case 3:
        return both([&] { target.real.replace(position, removed, view); },
                    [&] { target.model.replace(position, removed, text); });
      default:
        return both([&] { target.real.replace(position, removed, added, character); },
                    [&] { target.model.replace(position, removed, added, character); });
    }
  }

  void reshape(Pair& target) {
    const SString::Size size = number();
    const SString::Size position = positionIn(target.model);
    const char character = letter();
    switch (below(4)) {
      case 0:
        target.real.resize(size, character), target.model.resize(size, character);
        break;
      case 1:
        target.real.reserve(size * 3);
        break;
      case 2:
        target.real = "", target.model = "";
        break;
      default:
        if (position >= target.model.size()) break;
        target.real.mutableAt(position) = character;
        target.model[position] = character;
    }
  }

  std::mt19937 random_;
  std::array<Pair, 6> pairs_;
};

TEST(SStringRandom, AgreesWithTheStandardStringThroughRandomChanges) {
  for (unsigned seed = 0; seed < 100; ++seed) {
    SCOPED_TRACE(seed);
    RandomStrings strings(seed);
    for (int step = 0; step < 400; ++step) {
      strings.step();
      strings.check();
      if (testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace
}  // namespace vessant::test
