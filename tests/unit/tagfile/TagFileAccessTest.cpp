// Lookups in a tag file and changes of its tags.

#include <string>

#include "TagFileFixture.h"

namespace vessant::test {
namespace {

class TagFileLookup : public TagFileFixture {
 protected:
  TagFileLookup() { read("ONE: 1\nLIST:\na\nb\nc\n/:\n"); }
};

TEST_F(TagFileLookup, FindsTheValuesOfATag) {
  const StringDeque* values = file.findValues("LIST");
  ASSERT_NE(values, nullptr);
  EXPECT_EQ(values->count(), 3);
  EXPECT_EQ(values->get(1), "b");
}

TEST_F(TagFileLookup, FindsNoValuesOfAMissingTag) {
  EXPECT_EQ(file.findValues("NONE"), nullptr);
}

TEST_F(TagFileLookup, ComparesNamesByteForByte) {
  for (const char* name : {"one", "ONE:", " ONE", "ON", "ONE "}) {
    EXPECT_EQ(file.findValues(name), nullptr) << name;
  }
}

TEST_F(TagFileLookup, GivesTheFirstValueByDefault) {
  EXPECT_EQ(file.getValue("LIST"), "a");
  EXPECT_EQ(file.getValue("LIST", 2), "c");
}

TEST_F(TagFileLookup, GivesTheEmptyTextForWhatIsMissing) {
  EXPECT_EQ(file.getValue("LIST", 3), "");
  EXPECT_EQ(file.getValue("LIST", -1), "");
  EXPECT_EQ(file.getValue("NONE"), "");
}

TEST_F(TagFileLookup, CountsValues) {
  EXPECT_EQ(file.getValueCount("LIST"), 3);
  EXPECT_EQ(file.getValueCount("ONE"), 1);
  EXPECT_EQ(file.getValueCount("NONE"), 0);
}

enum class Answer { Yes, No, Fallback };

struct BooleanText {
  const char* text;
  Answer answer;
};

const BooleanText kBooleanTexts[] = {
    {"0", Answer::No},       {"1", Answer::Yes},         {"2", Answer::Yes},
    {"-1", Answer::Yes},     {"+0", Answer::No},         {"007", Answer::Yes},
    {"  1", Answer::Yes},    {"1x", Answer::Yes},        {"0x1", Answer::No},
    {"0.9", Answer::No},     {"65536", Answer::No},      {"65537", Answer::Yes},
    {"", Answer::Fallback},  {"true", Answer::Fallback}, {"x1", Answer::Fallback},
    {"-", Answer::Fallback}, {"yes", Answer::Fallback},  {"- 1", Answer::Fallback},
};

TEST_F(TagFileLookup, ReadsBooleansAsShortNumbers) {
  for (const BooleanText& boolean : kBooleanTexts) {
    SCOPED_TRACE(boolean.text);
    file.setValue("FLAG", boolean.text);
    EXPECT_EQ(file.getBoolean("FLAG", false), boolean.answer == Answer::Yes);
    EXPECT_EQ(file.getBoolean("FLAG", true), boolean.answer != Answer::No);
  }
}

TEST_F(TagFileLookup, FallsBackForAMissingBoolean) {
  EXPECT_TRUE(file.getBoolean("NONE", true));
  EXPECT_FALSE(file.getBoolean("NONE", false));
}

TEST_F(TagFileLookup, ReadsABooleanFromTheFirstValue) {
  file.addValue("FLAGS", "1");
  file.addValue("FLAGS", "0");
  EXPECT_TRUE(file.getBoolean("FLAGS", false));
}

class TagFileChange : public TagFileFixture {
 protected:
  TagFileChange() { read("ONE: 1\nLIST:\na\nb\nc\n/:\n"); }
};

TEST_F(TagFileChange, SetsANewTagAtTheEnd) {
  file.setValue("NEW", "x");
  EXPECT_EQ(tagsOf(file), (Tags{{"ONE", {"1"}}, {"LIST", {"a", "b", "c"}}, {"NEW", {"x"}}}));
}

TEST_F(TagFileChange, SetsTheOnlyValueInPlace) {
  file.setValue("ONE", "x");
  EXPECT_EQ(tagsOf(file), (Tags{{"ONE", {"x"}}, {"LIST", {"a", "b", "c"}}}));
}

TEST_F(TagFileChange, SetsOneValueForMany) {
  file.setValue("LIST", "x");
  EXPECT_EQ(tagsOf(file), (Tags{{"ONE", {"1"}}, {"LIST", {"x"}}}));
}

TEST_F(TagFileChange, SetsAValueThatStandsInTheTagItself) {
  file.setValue("LIST", file.findValues("LIST")->get(2));
  EXPECT_EQ(file.getValue("LIST"), "c");
  EXPECT_EQ(file.getValueCount("LIST"), 1);
}

TEST_F(TagFileChange, AddsValues) {
  file.addValue("ONE", "2");
  file.addValue("NEW", "");
  EXPECT_EQ(tagsOf(file), (Tags{{"ONE", {"1", "2"}}, {"LIST", {"a", "b", "c"}}, {"NEW", {""}}}));
}

TEST_F(TagFileChange, SetsBooleansAsDigits) {
  file.setBoolean("ONE", false);
  file.setBoolean("LIST", true);
  EXPECT_EQ(tagsOf(file), (Tags{{"ONE", {"0"}}, {"LIST", {"1"}}}));
}

TEST_F(TagFileChange, SetsTheTagsOfAJavaVm) {
  file.setJvmTags("/opt/java", "/tmp/vsjXYZ", true);
  EXPECT_EQ(file.getValue("JVM_HOME"), "/opt/java");
  EXPECT_EQ(file.getValue("JVM_FILE"), "/tmp/vsjXYZ");
  EXPECT_EQ(file.getValue("JVM_TEMP"), "1");
  file.setJvmTags("/home", "file", false);
  EXPECT_EQ(file.getValue("JVM_HOME"), "/home");
  EXPECT_EQ(file.getValue("JVM_FILE"), "file");
  EXPECT_EQ(file.getValue("JVM_TEMP"), "0");
  EXPECT_EQ(file.tags().count(), 5);
}

TEST_F(TagFileChange, RemovesATagWithItsValues) {
  file.removeTag("LIST");
  EXPECT_EQ(tagsOf(file), (Tags{{"ONE", {"1"}}}));
  EXPECT_EQ(file.findValues("LIST"), nullptr);
}

TEST_F(TagFileChange, RemovesNothingForAnUnknownName) {
  file.removeTag("list");
  EXPECT_EQ(file.tags().count(), 2);
}

TEST_F(TagFileChange, MakesRemovedTagsAnewAtTheEnd) {
  file.removeTag("ONE");
  file.setValue("ONE", "2");
  EXPECT_EQ(tagsOf(file), (Tags{{"LIST", {"a", "b", "c"}}, {"ONE", {"2"}}}));
}

}  // namespace
}  // namespace vessant::test
