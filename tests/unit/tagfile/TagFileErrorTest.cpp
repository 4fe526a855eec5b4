// What a tag file that cannot be read says.

#include <cstdio>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

#include "TagFileFixture.h"
#include "launcher/base/Handles.h"
#include "support/Thrown.h"

namespace vessant::test {
namespace {

constexpr const char* kNoColon = "Missing colon at the end of the tag name.";
constexpr const char* kNoBlockEnd = "Missing /: tag completer.";

struct SyntaxError {
  const char* name;
  const char* text;
  int line;
  const char* message;
};

const SyntaxError kSyntaxErrors[] = {
    {"NoColon", "A: 1\n\n no colon here\nB: 2\n", 3, kNoColon},
    {"NoColonInTheOnlyLine", "x", 1, kNoColon},
    {"CommentsDoNotExist", "# comment\nA: 1\n", 1, kNoColon},
    {"LineBehindABlock", "L:\na\n/:\nb\n", 4, kNoColon},
    {"BlockWithoutEnd", "A: 1\nL:\na\nb\n", 2, kNoBlockEnd},
    {"BlockWithoutAnyLine", "L:", 1, kNoBlockEnd},
    {"BlockWithOnlyALineEnd", "\n\nL:\n", 3, kNoBlockEnd},
    {"StrayBlockEndAtTheEnd", "A: 1\n/:\n", 2, kNoBlockEnd},
    {"BlockEndWithText", "L:\na\n/: /:\n", 1, kNoBlockEnd},
    {"BlockEndInQuotes", "L:\n\"/:\"\n", 1, kNoBlockEnd},
};

void PrintTo(const SyntaxError& error, std::ostream* out) {
  *out << error.text;
}

class TagFileSyntaxError : public TagFileFixture,
                           public ::testing::WithParamInterface<SyntaxError> {};

TEST_P(TagFileSyntaxError, NamesTheFileAndTheLineAndIsLogged) {
  const SyntaxError& error = GetParam();
  const std::string expected =
      "Syntax error in source at line " + std::to_string(error.line) + " ==> " + error.message;
  EXPECT_EQ(thrownMessage([&] { read(error.text); }), expected);
  EXPECT_EQ(log.lines(), (std::vector<RecordingLog::Line>{{expected, LogLevel::Error}}));
  EXPECT_FALSE(file.isComplete());
}

INSTANTIATE_TEST_SUITE_P(TagFile, TagFileSyntaxError, ::testing::ValuesIn(kSyntaxErrors),
                         [](const auto& error) { return std::string(error.param.name); });

struct OpenQuote {
  const char* name;
  const char* text;
  int position;
};

const OpenQuote kOpenQuotes[] = {
    {"NeverClosed", "A: \"abc\n", 4},
    {"OnlyTheQuote", "A:\"\n", 3},
    {"DoubledInsideThenNoEnd", "A: \"a\"\"bc\n", 7},
    {"DoubledAtTheEnd", "A: \"abc\"\"\n", -1},
    {"ThreeQuotes", "A: \"\"\"\n", -1},
    {"BlockLineNeverClosed", "L:\n  \"abc\n/:\n", 1},
    {"BlockLineDoubledAtTheEnd", "L:\n\"abc\"\"\n/:\n", -1},
};

void PrintTo(const OpenQuote& quote, std::ostream* out) {
  *out << quote.text;
}

class TagFileOpenQuote : public TagFileFixture, public ::testing::WithParamInterface<OpenQuote> {};

TEST_P(TagFileOpenQuote, TellsThePosition) {
  EXPECT_EQ(thrownMessage([&] { read(GetParam().text); }),
            "Expected double quote to end argument near " + std::to_string(GetParam().position));
  EXPECT_TRUE(log.lines().empty()) << "only syntax errors are logged";
}

INSTANTIATE_TEST_SUITE_P(TagFile, TagFileOpenQuote, ::testing::ValuesIn(kOpenQuotes),
                         [](const auto& quote) { return std::string(quote.param.name); });

class TagFileErrors : public TagFileFixture {};

TEST_F(TagFileErrors, StopAtTheFirst) {
  EXPECT_EQ(thrownMessage([&] { read("one\ntwo\n"); }),
            std::string("Syntax error in source at line 1 ==> ") + kNoColon);
  EXPECT_EQ(log.lines().size(), 1U);
}

// They are the owner's, who may look at them or clear them away.
TEST_F(TagFileErrors, KeepTheTagsInFrontOfThem) {
  EXPECT_NE(thrownMessage([&] { read("A: 1\nL:\na\n/:\nbad\nB: 2\n"); }), "");
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}, {"L", {"a"}}}));
}

TEST_F(TagFileErrors, KeepNoTagWhoseBlockHasNoEnd) {
  EXPECT_NE(thrownMessage([&] { read("A: 1\nL:\na\n"); }), "");
  EXPECT_EQ(tagsOf(file), (Tags{{"A", {"1"}}}));
}

TEST_F(TagFileErrors, GiveTheLinesOfSuchABlockToNoLaterTag) {
  EXPECT_NE(thrownMessage([&] { read("L:\na\nb\n"); }), "");
  read("M:\nc\n/:\n");
  EXPECT_EQ(tagsOf(file), (Tags{{"M", {"c"}}}));
}

TEST_F(TagFileErrors, NameThePathOfAFile) {
  const std::string path = tree.file("bad.tag", "bad\n");
  EXPECT_EQ(thrownMessage([&] { TagFile(SString(path), log); }),
            "Syntax error in " + path + " at line 1 ==> " + kNoColon);
}

TEST_F(TagFileErrors, NameAFileThatCannotBeOpened) {
  const std::string path = tree.path("missing.tag");
  EXPECT_EQ(thrownMessage([&] { TagFile(SString(path), log); }),
            "Unable to load input file: " + path);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(TagFileErrors, NameAFileThatMayNotBeRead) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every file";
  const std::string path = tree.file("secret.tag", "A: 1\n");
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  EXPECT_EQ(thrownMessage([&] { TagFile(SString(path), log); }),
            "Unable to load input file: " + path);
}

TEST_F(TagFileErrors, RefuseAStreamWithoutPositions) {
  int ends[2] = {};
  ASSERT_EQ(::pipe(ends), 0);
  ::close(ends[1]);
  const StdFile stream(::fdopen(ends[0], "r"));
  ASSERT_NE(stream, nullptr);
  EXPECT_EQ(
      thrownMessage([&] { file.load(stream.get(), "source", 0, TagFile::kToEndOfFile, log); }),
      "Unable to read tag file.");
  EXPECT_TRUE(log.lines().empty());
}

// A read error ends the text.
TEST_F(TagFileErrors, TakeADirectoryForAnEmptyFile) {
  const TagFile directory(SString(tree.dir("directory")), log);
  EXPECT_TRUE(directory.isComplete());
  EXPECT_EQ(directory.tags().count(), 0);
}

}  // namespace
}  // namespace vessant::test
