// Findings: their form, their order, and what is allowed.

#include <algorithm>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "packer/Finding.h"

namespace vessant::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> linesOf(const Findings& findings) {
  std::vector<std::string> lines;
  for (const Finding& finding : findings.sorted()) lines.push_back(lineOf(finding));
  return lines;
}

TEST(Findings, AreLinesWithPlaceTextAndName) {
  Findings findings;
  findings.error("a", 3, "bad-id", "no id");
  findings.warning("a", 0, "bad-name", "no name");
  EXPECT_THAT(linesOf(findings),
              ElementsAre("a: warning: no name [bad-name]", "a:3: error: no id [bad-id]"));
  std::ostringstream stream;
  printFindings(findings, stream);
  EXPECT_EQ(stream.str(), "a: warning: no name [bad-name]\na:3: error: no id [bad-id]\n");
}

TEST(Findings, ComeByFileInOrderOfAppearanceAndByLine) {
  Findings findings;
  findings.error("z", 9, "x", "1");
  findings.error("a", 5, "x", "2");
  findings.error("z", 2, "x", "3");
  findings.error("z", 2, "x", "4");
  EXPECT_THAT(linesOf(findings), ElementsAre("z:2: error: 3 [x]", "z:2: error: 4 [x]",
                                             "z:9: error: 1 [x]", "a:5: error: 2 [x]"));
}

TEST(Findings, StandOnce) {
  Findings findings;
  findings.error("a", 1, "x", "1");
  findings.error("a", 1, "x", "2");
  findings.error("a", 1, "x", "1");
  EXPECT_THAT(linesOf(findings), ElementsAre("a:1: error: 1 [x]", "a:1: error: 2 [x]"));
}

TEST(Findings, AreDroppedWhenAllowed) {
  Findings findings({"x"});
  findings.error("a", 1, "x", "1");
  EXPECT_TRUE(findings.isEmpty());
  findings.warning("a", 1, "y", "2");
  EXPECT_FALSE(findings.isEmpty());
  EXPECT_FALSE(findings.hasErrors());
  findings.error("a", 1, "z", "3");
  EXPECT_TRUE(findings.hasErrors());
}

TEST(Findings, ForeignTextMakesNoSecondLineAndNoEscapes) {
  Findings findings;
  findings.error("a\nb", 1, "x", "c\033[2Jd\xC3\xA9");
  EXPECT_THAT(linesOf(findings), ElementsAre("a\\x0Ab:1: error: c\\x1B[2Jd\xC3\xA9 [x]"));
}

TEST(Findings, AreJsonForMachines) {
  Findings findings;
  findings.error("a\xFF", 3, "bad-id", "say \"no\"");
  std::ostringstream stream;
  printFindingsAsJson(findings, stream);
  EXPECT_EQ(stream.str(),
            "{\n  \"findings\": [\n    {\n      \"file\": \"a\xEF\xBF\xBD\",\n      \"line\": 3,\n"
            "      \"severity\": \"error\",\n      \"name\": \"bad-id\",\n"
            "      \"text\": \"say \\\"no\\\"\"\n    }\n  ]\n}\n");
}

TEST(Findings, NamesAreSortedAndInKebabCase) {
  const std::vector<std::string>& names = findingNames();
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
  for (const std::string& name : names) EXPECT_THAT(name, testing::MatchesRegex("[a-z0-9-]+"));
}

}  // namespace
}  // namespace vessant::test
