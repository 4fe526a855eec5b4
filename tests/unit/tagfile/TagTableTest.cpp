// The table of tags under every tag file, against a plain list that does the same slowly.

#include <algorithm>
#include <random>
#include <string>

#include "TagFileFixture.h"

namespace vessant::test {
namespace {

/// What a tag file is to do, done by searching from the front.
struct PlainTags {
  Tags tags;

  Tags::iterator find(const std::string& name) {
    return std::find_if(tags.begin(), tags.end(),
                        [&](const auto& tag) { return tag.first == name; });
  }
  void remove(const std::string& name) {
    const auto known = find(name);
    if (known != tags.end()) tags.erase(known);
  }
  std::vector<std::string>& values(const std::string& name) {
    const auto known = find(name);
    return known != tags.end() ? known->second
                               : tags.emplace_back(name, Tags::value_type::second_type()).second;
  }
};

class TagTableModel : public TagFileFixture {
 protected:
  std::string name() { return "T" + std::to_string(random() % 40); }
  std::string value() { return "value " + std::to_string(random() % 1000); }
  void step();

  std::mt19937 random{4711};  // the same on every run
  PlainTags plain;
};

void TagTableModel::step() {
  const std::string tag = name();
  const std::string text = value();
  const SString tagText{std::string_view(tag)};
  const SString valueText{std::string_view(text)};
  switch (random() % 5) {
    case 0:
      plain.remove(tag);
      file.removeTag(tag);
      break;
    case 1:
      plain.values(tag).push_back(text);
      file.addValue(tagText, valueText);
      break;
    case 2:
      plain.values(tag) = {text};
      file.setValue(tagText, valueText);
      break;
    case 3:
      plain.remove(tag);
      plain.values(tag) = {text};
      read(tag + ": " + text + "\n");
      break;
    default:
      plain.remove(tag);
      plain.values(tag) = {text, "second"};
      read(tag + ":\n" + text + "\nsecond\n/:\n");
  }
}

TEST_F(TagTableModel, AgreesWithAPlainListWhateverIsDone) {
  for (int i = 0; i < 3000; ++i) {
    step();
    const std::string asked = name();
    const auto known = plain.find(asked);
    const std::string expected =
        known == plain.tags.end() || known->second.empty() ? "" : known->second.front();
    ASSERT_EQ(str(file.getValue(asked)), expected) << i;
    if (i % 100 == 0) {
      ASSERT_EQ(tagsOf(file), plain.tags) << i;
    }
  }
  EXPECT_EQ(tagsOf(file), plain.tags);
  EXPECT_EQ(static_cast<std::size_t>(file.tags().count()), plain.tags.size());
}

}  // namespace
}  // namespace vessant::test
