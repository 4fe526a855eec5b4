// The message compiler, run on files that a translator may have broken.

#include <filesystem>
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/BuildPaths.h"
#include "support/ProcessRunner.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

using testing::HasSubstr;

/// Message `n` stands on line n + kLinesAbove.
constexpr int kLinesAbove = 5;

std::string textOf(int number) {
  switch (number) {
    case 1:
      return "Doing %s...";
    case 13:
      return "Name";
    case 18:
      return ".";
    case 24:
      return "Word: ";
    case 35:
      return "one\\ntwo\\nthree";
    case 37:
      return " Hint.";
    default:
      return "Text " + std::to_string(number);
  }
}

std::string lineOf(int number, const std::string& text) {
  return std::to_string(number) + " \"" + text + "\"\n";
}

std::string lineOf(int number) {
  return lineOf(number, textOf(number));
}

std::string messageFile(const std::string& language, const std::string& charset) {
  std::string text = "# A comment.\n\ncharset " + charset + "\nlanguage " + language + "\n\n";
  for (int number = 1; number <= 39; ++number) text += lineOf(number);
  return text;
}

void replace(std::string& text, const std::string& from, const std::string& to) {
  const std::size_t place = text.find(from);
  ASSERT_NE(place, std::string::npos) << from;
  text.replace(place, from.size(), to);
}

class MessageCompiler {
 public:
  MessageCompiler() {
    tree_.file("en.msg", english);
    tree_.file("xx.msg", other);
  }

  ProcessResult run() {
    tree_.file("en.msg", english);
    tree_.file("xx.msg", other);
    return runProcess(
        {.command = {kMessageCompiler, output(), tree_.path("en.msg"), tree_.path("xx.msg")}});
  }

  [[nodiscard]] std::string output() const { return tree_.path("Catalog.cpp"); }
  [[nodiscard]] std::string path(const std::string& name) const { return tree_.path(name); }
  [[nodiscard]] bool hasWritten() const { return std::filesystem::exists(output()); }

  std::string english = messageFile("en", "ASCII");
  std::string other = messageFile("xx", "CP850");

 private:
  TempTree tree_;
};

TEST(MessageCompiler, WritesTheRowsInTheirCharacterSets) {
  MessageCompiler compiler;
  replace(compiler.other, lineOf(2), lineOf(2, "\u00e4\u00f6 1 \"so\"?"));
  const ProcessResult result = compiler.run();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.err, "");
  const std::string source = readFile(compiler.output());
  EXPECT_THAT(source, HasSubstr("{\"en\",\n     \"Doing %s...\",\n     \"Text 2\",\n"));
  EXPECT_THAT(source, HasSubstr("{\"xx\",\n     \"Doing %s...\",\n"
                                "     \"\\204\\224 1 \\042so\\042\\077\",\n"));
  EXPECT_THAT(source, HasSubstr("\"one\\134ntwo\\134nthree\""));
  EXPECT_THAT(source, HasSubstr("\"Text 39\",\n     nullptr},\n"));
  EXPECT_THAT(source, HasSubstr("static_assert(kLanguageCount == 2,"));
}

TEST(MessageCompiler, EscapesABytesWithAllThreeDigits) {
  MessageCompiler compiler;
  replace(compiler.other, lineOf(2), lineOf(2, "\u00e41"));
  EXPECT_EQ(compiler.run().status, 0);
  EXPECT_THAT(readFile(compiler.output()), HasSubstr("\"\\2041\""));
}

TEST(MessageCompiler, TellsHowItIsUsed) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{}, std::vector<std::string>{"Catalog.cpp"}}) {
    std::vector<std::string> command = {kMessageCompiler};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const ProcessResult result = runProcess({.command = command});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "usage: message_compiler OUTPUT ENGLISH.msg OTHER.msg...\n");
  }
}

TEST(MessageCompiler, NamesAFileThatIsNotThere) {
  MessageCompiler compiler;
  const std::string missing = compiler.path("yy.msg");
  const ProcessResult result = runProcess(
      {.command = {kMessageCompiler, compiler.output(), compiler.path("en.msg"), missing}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, missing + ":1: cannot be opened\n");
  EXPECT_FALSE(compiler.hasWritten());
}

TEST(MessageCompiler, SaysWhenItCannotWrite) {
  MessageCompiler compiler;
  const std::string output = compiler.path("no/such/Catalog.cpp");
  const ProcessResult result = runProcess(
      {.command = {kMessageCompiler, output, compiler.path("en.msg"), compiler.path("xx.msg")}});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, output + ": cannot be written\n");
}

struct Flaw {
  const char* name;
  /// What is wrong with the file.
  std::function<void(std::string& file)> make;
  int line;
  std::string reason;
};

void PrintTo(const Flaw& flaw, std::ostream* out) {
  *out << flaw.reason;
}

Flaw inText(const char* name, int number, const std::string& text, const std::string& reason) {
  return {name, [=](std::string& file) { replace(file, lineOf(number), lineOf(number, text)); },
          number + kLinesAbove, reason};
}

Flaw inLine(const char* name, const std::string& from, const std::string& to, int line,
            const std::string& reason) {
  return {name, [=](std::string& file) { replace(file, from, to); }, line, reason};
}

const std::string kForm = "expected: number, one blank, text in double quotes";
const std::string kPlaceholders = "the English text has another number of %s";
const std::string kBlanks = "blanks at the ends of the text must be as in English";
const std::string kLineBreaks = "the English text has another number of \\n";
const std::string kSame = "this text is the same in every language";
const std::string kNotUtf8 = "the line is not UTF-8";
const std::string kControl = "a tab or another control character in the text";

const Flaw kFlaws[] = {
    inText("CharacterOutsideTheSet", 7, "ab \u0416c",
           "CP850 cannot hold the text from here on: \u0416c"),
    inText("CombiningAccent", 7, "a\u0308", "CP850 cannot hold the text from here on: \u0308"),
    inText("TypographyOutsideTheSet", 7, "Wait\u2026",
           "CP850 cannot hold the text from here on: \u2026"),
    inLine("MissingMessage", lineOf(20), "", 38 + kLinesAbove, "message 20 is missing"),
    inLine("MissingLastMessage", lineOf(39), "", 38 + kLinesAbove, "message 39 is missing"),
    inLine("SurplusMessage", lineOf(39), lineOf(39) + lineOf(40), 40 + kLinesAbove,
           "there is no message 40"),
    inLine("MessageZero", lineOf(1), lineOf(0) + lineOf(1), 1 + kLinesAbove,
           "there is no message 0"),
    inLine("HugeNumber", lineOf(39), "99999999999999999999 \"x\"\n", 39 + kLinesAbove,
           "there is no message 9223372036854775807"),
    inLine("DuplicateMessage", lineOf(9), lineOf(9) + lineOf(8), 10 + kLinesAbove,
           "message 8 stands here again"),
    inText("LostPlaceholder", 1, "Doing it...", kPlaceholders),
    inText("SurplusPlaceholder", 7, "Text %s", kPlaceholders),
    inText("DoubledPlaceholder", 1, "Doing %s %s...", kPlaceholders),
    inText("BrokenPlaceholder", 1, "Doing % s...", kPlaceholders),
    inText("PercentSign", 7, "100 %", "a % that begins no %s"),
    inText("PercentSignBesideAPlaceholder", 1, "100% %s", "a % that begins no %s"),
    inText("OtherConversion", 7, "%d", "a % that begins no %s"),
    inText("LostBlankAtTheEnd", 24, "Word:", kBlanks),
    inText("DoubledBlankAtTheEnd", 24, "Word:  ", kBlanks),
    inText("AddedBlankAtTheEnd", 7, "Text 7 ", kBlanks),
    inText("LostBlankAtTheStart", 37, "Hint.", kBlanks),
    inText("AddedBlankAtTheStart", 7, " Text 7", kBlanks),
    inText("OnlyABlank", 24, " ", kBlanks),
    inText("LostLineBreak", 35, "one\\ntwo three", kLineBreaks),
    inText("SurplusLineBreak", 35, "one\\ntwo\\nthree\\nfour", kLineBreaks),
    inText("ChangedName", 13, "Nom", kSame),
    inText("ChangedProgressStep", 18, "*", kSame),
    inText("BadUtf8", 7, "Text \xE4\xF6", kNotUtf8),
    inText("CutUtf8", 7, "Text \xC3", kNotUtf8),
    inLine("BadUtf8InAComment", "# A comment.", "# A c\xF6mment.", 1, kNotUtf8),
    inText("Tab", 7, "Text\t7", kControl),
    inText("ZeroByte", 7, std::string("Text\0007", 6), kControl),
    inText("Delete", 7, "Text\x7F", kControl),
    inLine("UnknownCharset", "charset CP850", "charset CP9999", 3, "unknown character set CP9999"),
    inLine("EmptyCharset", "charset CP850", "charset ", 3, "unknown character set "),
    inLine("CharsetThatReplaces", "charset CP850", "charset ASCII//TRANSLIT", 3,
           "unknown character set ASCII//TRANSLIT"),
    inLine("NoCharset", "charset CP850\n", "", 38 + kLinesAbove, "no line 'charset NAME'"),
    inLine("TwoCharsets", "language xx", "charset CP437", 4, "such a line stands above already"),
    inLine("NoLanguage", "language xx\n", "", 38 + kLinesAbove, "no line 'language NAME'"),
    inLine("TwoLanguages", "language xx\n\n", "language xx\nlanguage xx\n", 5,
           "such a line stands above already"),
    inLine("OtherLanguage", "language xx", "language yy", 4,
           "the language is not that of the file's name"),
    inLine("NoNumber", lineOf(7), "\"Text 7\"\n", 7 + kLinesAbove, kForm),
    inLine("NoQuotes", lineOf(7), "7 Text\n", 7 + kLinesAbove, kForm),
    inLine("OneQuote", lineOf(7), "7 \"Text\n", 7 + kLinesAbove, kForm),
    inLine("TwoBlanksBehindTheNumber", lineOf(7), "7  \"Text\"\n", 7 + kLinesAbove, kForm),
    inLine("TextBehindTheQuote", lineOf(7), "7 \"Text\" # mended\n", 7 + kLinesAbove, kForm),
    inLine("WindowsLineEnd", lineOf(7), "7 \"Text\"\r\n", 7 + kLinesAbove, kForm),
    inLine("OtherWord", "# A comment.", "Remark", 1, kForm),
    inLine("ByteOrderMark", "# A comment.", "\uFEFF# A comment.", 1, kForm),
    {"EmptyFile", [](std::string& file) { file.clear(); }, 1, "no line 'charset NAME'"},
};

class MessageCompilerFlaw : public testing::TestWithParam<Flaw> {};

TEST_P(MessageCompilerFlaw, StopsWithTheFileTheLineAndTheReason) {
  MessageCompiler compiler;
  GetParam().make(compiler.other);
  const ProcessResult result = compiler.run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, compiler.path("xx.msg") + ":" + std::to_string(GetParam().line) + ": " +
                            GetParam().reason + "\n");
  EXPECT_FALSE(compiler.hasWritten());
}

INSTANTIATE_TEST_SUITE_P(EveryFlaw, MessageCompilerFlaw, testing::ValuesIn(kFlaws),
                         [](const testing::TestParamInfo<Flaw>& row) { return row.param.name; });

TEST(MessageCompiler, HoldsTheEnglishFileToTheSameRules) {
  MessageCompiler compiler;
  replace(compiler.english, lineOf(3), lineOf(3, "100 % sure"));
  const ProcessResult result = compiler.run();
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, compiler.path("en.msg") + ":8: a % that begins no %s\n");
}

TEST(MessageCompiler, KeepsAnEarlierCatalogWhenItFails) {
  MessageCompiler compiler;
  ASSERT_EQ(compiler.run().status, 0);
  const std::string before = readFile(compiler.output());
  replace(compiler.other, lineOf(1), lineOf(1, "lost"));
  EXPECT_EQ(compiler.run().status, 1);
  EXPECT_EQ(readFile(compiler.output()), before);
}

}  // namespace
}  // namespace vessant::test
