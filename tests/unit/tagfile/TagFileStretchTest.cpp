// Tag files that lie inside a larger file, and the state of a tag file around its reading.

#include <string>

#include "TagFileFixture.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

class TagFileStretch : public TagFileFixture {};

TEST_F(TagFileStretch, BeginsAtTheOffset) {
  readStretch("junk without a colon\nA: 1\nB: 2\n", 21, TagFile::kToEndOfFile);
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}, {"B", {"2"}}}));
}

TEST_F(TagFileStretch, EndsBehindItsLength) {
  readStretch("junkA: 1\nB: 2\nC: 3\nmore junk", 4, 10);
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}, {"B", {"2"}}}));
}

TEST_F(TagFileStretch, ReadsALineThatBeginsInsideToItsEnd) {
  readStretch("A: 1\nB: 23456\nC: 3\n", 0, 6);
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}, {"B", {"23456"}}}));
}

TEST_F(TagFileStretch, ReadsNoLineThatBeginsAtItsEnd) {
  readStretch("A: 1\nB: 2\n", 0, 5);
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}}));
}

TEST_F(TagFileStretch, IsEmptyWithoutLength) {
  readStretch("A: 1\n", 0, 0);
  EXPECT_EQ(file.tags().count(), 0);
  EXPECT_EQ(file.lineNumber(), 0);
  EXPECT_TRUE(file.isComplete());
}

TEST_F(TagFileStretch, ReadsABlockPastItsLength) {
  readStretch("L:\na\nb\nc\n/:\nM: 1\n", 0, 4);
  EXPECT_EQ(tagsOf(file), (Tags{{"L", {"a", "b", "c"}}}));
}

TEST_F(TagFileStretch, ReadsAnOpenBlockToTheNextBlockEndOfTheFile) {
  readStretch("L:\na\nN:\nb\n/:\nM: 1\n", 0, 5);
  EXPECT_EQ(tagsOf(file), (Tags{{"L", {"a", "N:", "b"}}}));
}

TEST_F(TagFileStretch, MissesTheBlockEndAtTheEndOfTheFile) {
  EXPECT_EQ(thrownMessage([&] { readStretch("junk\nA: 1\nL:\na\nmore\n", 5, 10); }),
            "Syntax error in source at line 2 ==> Missing /: tag completer.");
}

TEST_F(TagFileStretch, EndsWithTheFileWhenThatIsShorter) {
  readStretch("A: 1\n", 0, 0xFFFFFFFF);
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}}));
}

TEST_F(TagFileStretch, IsEmptyBeyondTheEndOfTheFile) {
  readStretch("A: 1\n", 0xFFFFFFFF, 0xFFFFFFFF);
  EXPECT_EQ(file.tags().count(), 0);
  EXPECT_TRUE(file.isComplete());
}

TEST_F(TagFileStretch, CountsItsOwnLines) {
  readStretch("junk\njunk\nA: 1\n\nB:\nb\n/:\nC: 1\n", 10, 14);
  EXPECT_EQ(file.lineNumber(), 5);
}

TEST_F(TagFileStretch, ReadsALineAndABlockFarPastItsLength) {
  const std::string longValue(200'000, 'v');
  const std::string text = "L:\na\n" + longValue + "\nb\n/:\nM: 1\n";
  readStretch(text, 0, 4);
  EXPECT_EQ(tagsOf(file), (Tags{{"L", {"a", longValue, "b"}}}));
  readStretch("X: " + longValue + "\nM: 1\n", 0, 2);
  EXPECT_EQ(file.getValue("X"), longValue.c_str());
}

class TagFileTwice : public TagFileFixture {};

TEST_F(TagFileTwice, KeepsWhatIsNotDefinedAnew) {
  read("A: 1\nB: 2\nC: 3\n");
  read("D: 4\nB:\nx\ny\n/:\n");
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}, {"C", {"3"}}, {"D", {"4"}}, {"B", {"x", "y"}}}));
}

TEST_F(TagFileTwice, FindsTheLastDefinitionAlone) {
  read("A: 1\n");
  file.addValue("A", "changed");
  read("A: 2\n");
  EXPECT_EQ(file.getValue("A"), "2");
  EXPECT_EQ(file.getValueCount("A"), 1);
  EXPECT_EQ(file.tags().count(), 1);
}

TEST_F(TagFileTwice, AnEmptyBlockRemovesTheTag) {
  read("A: 1\nB: 2\n");
  read("A:\n/:\n");
  EXPECT_EQ(tagsOf(file), (Tags{{"B", {"2"}}}));
}

TEST_F(TagFileTwice, KeepsValuesThatWereHandedOut) {
  read("A: 1\nB: 2\n");
  const StringDeque* values = file.findValues("A");
  std::string more;
  for (int i = 0; i < 1000; ++i) more += "T" + std::to_string(i) + ": value\n";
  read(more);
  file.setValue("B", "3");
  EXPECT_EQ(file.findValues("A"), values);
  EXPECT_EQ(values->get(0), "1");
}

class TagFileState : public TagFileFixture {};

TEST_F(TagFileState, IsEmptyAtFirst) {
  EXPECT_EQ(file.tags().count(), 0);
  EXPECT_EQ(file.lineNumber(), 0);
  EXPECT_EQ(file.sourceName(), "");
  EXPECT_FALSE(file.isComplete());
}

TEST_F(TagFileState, KnowsItsSourceAndItsLinesOnceRead) {
  read("A: 1\nB: 2");
  EXPECT_EQ(file.lineNumber(), 2);
  EXPECT_EQ(file.sourceName(), "source");
  EXPECT_TRUE(file.isComplete());
}

// The end of the file counts as a line when it follows a line end.
TEST_F(TagFileState, CountsTheEmptyLineAtTheEndOfTheFile) {
  read("A: 1\n");
  EXPECT_EQ(file.lineNumber(), 2);
}

TEST_F(TagFileState, KnowsThePathThatItWasReadFrom) {
  const std::string path = tree.file("some.tag", "A: 1\n");
  EXPECT_EQ(TagFile(SString(path), log).sourceName(), path.c_str());
}

TEST_F(TagFileState, KeepsSourceAndLineOfAnError) {
  static_cast<void>(thrownMessage([&] { read("A: 1\nbad\n"); }));
  EXPECT_EQ(file.lineNumber(), 2);
  EXPECT_EQ(file.sourceName(), "source");
}

}  // namespace
}  // namespace vessant::test
