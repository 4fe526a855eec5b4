// The reader of code, on code in the project's own form.

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "house/CodeReader.h"
#include "house/Rooms.h"
#include "house/Sizes.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

/// Each function as its name and its two lines.
std::vector<std::string> functionsIn(const std::string& text) {
  std::vector<std::string> functions;
  for (const FunctionRange& function : outlineOf(linesOf(text)).functions) {
    functions.push_back(function.name + " " + std::to_string(function.firstLine) + "-" +
                        std::to_string(function.lastLine));
  }
  return functions;
}

std::vector<std::string> declarationsIn(const std::string& text) {
  return outlineOf(linesOf(text)).declarations;
}

TEST(CodeReader, FindsAFunctionFromItsSignatureToItsBrace) {
  EXPECT_THAT(functionsIn("namespace a {\n\n// A comment.\nint f(int x,\n      int y) {\n"
                          "  if (x) {\n    return 1;\n  }\n  return y;\n}\n\n}\n"),
              ElementsAre("f 4-10"));
}

TEST(CodeReader, FindsMembersInsideAndOutsideOfTheirClass) {
  EXPECT_THAT(functionsIn("class A : public B {\n public:\n  int f() const { return x_; }\n"
                          "  A& operator=(const A&) = delete;\n\n private:\n  int x_ = 0;\n};\n"
                          "SString A::name() const {\n  return {};\n}\nA::~A() = default;\n"),
              ElementsAre("f 3-3", "A::name 9-11", "A::~A 12-12"));
}

TEST(CodeReader, KnowsAConstructorWithBracesInItsList) {
  EXPECT_THAT(functionsIn("A::A(int x)\n    : Base(x), y_{x}, z_{1} {\n  g();\n}\n"),
              ElementsAre("A::A 1-4"));
  EXPECT_THAT(functionsIn("A::A() : y_(new B{1}) {}\n"), ElementsAre("A::A 1-1"));
}

TEST(CodeReader, CountsALambdaOnlyInATable) {
  EXPECT_THAT(functionsIn("void f() {\n  g([](int x) { return x; });\n}\n"), ElementsAre("f 1-3"));
  EXPECT_THAT(functionsIn("constexpr Row kRows[] = {\n    {\"a\", [](int x) {\n       return x;\n"
                          "     }},\n};\n"),
              testing::SizeIs(1));
}

TEST(CodeReader, PassesOverBracesThatAreNoCode) {
  EXPECT_THAT(functionsIn("const char* const kText = \"void f() {\";\nconst char kBrace = '{';\n"
                          "// void g() {\n#define H() {\nint i() {\n  return '}';\n}\n"),
              ElementsAre("i 5-7"));
}

TEST(CodeReader, KnowsValuesFromFunctions) {
  EXPECT_THAT(functionsIn("constexpr int kTable[] = {1, 2};\nstruct A {\n  int x = f(1);\n"
                          "  std::vector<int> y{1, 2};\n};\nalignas(4) const A kA = {1};\nenum "
                          "class E { A, B };\n"),
              IsEmpty());
}

TEST(CodeReader, FindsWhatAHeaderOnlyDeclares) {
  EXPECT_THAT(declarationsIn("class A {\n public:\n  A();\n  virtual void pure() = 0;\n"
                             "  A(const A&) = delete;\n  [[nodiscard]] int size() const;\n"
                             "  int inside() const { return 1; }\n"
                             "  std::function<void(int)> callback;\n  int x = f(2);\n"
                             "  void (*handler_)(int);\n};\nusing F = void (*)(int);\n"
                             "SString free(const A& a,\n             int b);\n"),
              ElementsAre("A", "size", "free"));
}

TEST(CodeReader, FindsOperators) {
  EXPECT_THAT(declarationsIn("bool operator==(const A& a, const A& b);\n"),
              ElementsAre("operator=="));
}

TEST(CodeReader, TakesNamesApart) {
  EXPECT_EQ(lastPart("A::B::f"), "f");
  EXPECT_EQ(ownerOf("A::B::f"), "B");
  EXPECT_EQ(ownerOf("f"), "");
  EXPECT_EQ(ownerOf("A::operator std::string"), "A");
}

TEST(CodeReader, CountsCommentLines) {
  EXPECT_EQ(commentLines(linesOf("// one\nint x;  // no line of its own\n  /// two\n\n")), 2U);
}

TEST(Rooms, AreTheNearestDirectoriesThatTheTableNames) {
  const RoomTable table = {{"base", {}}, {"driver", {}}, {"driver/output", {}}, {"packer", {}}};
  EXPECT_EQ(roomOf(table, "launcher/base/SString.h"), "base");
  EXPECT_EQ(roomOf(table, "launcher/driver/Main.h"), "driver");
  EXPECT_EQ(roomOf(table, "launcher/driver/output/Log.h"), "driver/output");
  EXPECT_EQ(roomOf(table, "packer/check/TagText.h"), "packer");
  EXPECT_EQ(roomOf(table, "launcher/unknown/X.h"), "unknown");
}

TEST(Rooms, ArrowsThatFollowFromOthersAreLeftOut) {
  const RoomArrows arrows = {{"a", {"b", "c"}}, {"b", {"c"}}, {"c", {}}};
  const RoomArrows direct = {{"a", {"b"}}, {"b", {"c"}}, {"c", {}}};
  EXPECT_EQ(directArrows(arrows), direct);
}

TEST(Rooms, ACircleHasNoFloors) {
  EXPECT_THROW(static_cast<void>(floorsOf({{"a", {"b"}}, {"b", {"a"}}})), std::runtime_error);
}

TEST(Spread, IsTheMiddleTheNinthTenthAndTheLast) {
  const Spread spread = spreadOf({10, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_EQ(spread.median, 6U);
  EXPECT_EQ(spread.p90, 10U);
  EXPECT_EQ(spread.longest, 10U);
}

}  // namespace
}  // namespace vessant::test
