// What the pages for developers name is there.

#include <filesystem>
#include <regex>
#include <set>

#include <gtest/gtest.h>

#include "house/SourceTree.h"
#include "support/BuildPaths.h"
#include "support/TempTree.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

bool isThere(const std::string& name) {
  const fs::path top = kSourceDir;
  for (const char* below : {"", "native", "native/launcher", "tests", "docs"}) {
    if (fs::exists(top / below / name)) return true;
  }
  return false;
}

class Page : public ::testing::TestWithParam<const char*> {};

TEST_P(Page, NamesFilesThatExist) {
  const std::string page = readFile(std::string(kSourceDir) + "/" + GetParam());
  const std::regex file(R"(`([\w./-]+\.(?:cpp|h|md|svg|txt|py)|scripts/\w+)`)");
  int checked = 0;
  for (std::sregex_iterator at(page.begin(), page.end(), file), end; at != end; ++at, ++checked) {
    EXPECT_TRUE(isThere((*at)[1].str())) << GetParam() << " names " << (*at)[1];
  }
  EXPECT_GT(checked, 0) << "no names were found";
}

std::string pageName(const ::testing::TestParamInfo<const char*>& parameter) {
  return fs::path(parameter.param).stem().string();
}

INSTANTIATE_TEST_SUITE_P(Pages, Page, ::testing::Values("docs/design.md", "HACKING.md"), pageName);

/// Every test as "Suite.Name".
std::set<std::string> allTests() {
  const std::regex test(R"(\bTEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\))");
  std::set<std::string> names;
  for (const SourceFile& file : sourceFiles("tests")) {
    for (const std::string& line : file.lines) {
      std::smatch match;
      if (std::regex_search(line, match, test)) names.insert(match[1].str() + "." + match[2].str());
    }
  }
  return names;
}

TEST(SecurityPage, NamesTestsThatExist) {
  const std::string page = readFile(std::string(kSourceDir) + "/docs/security.md");
  const std::set<std::string> tests = allTests();
  const std::regex name(R"(`([A-Z]\w+\.[A-Z]\w+)`)");
  int checked = 0;
  for (std::sregex_iterator at(page.begin(), page.end(), name), end; at != end; ++at, ++checked) {
    EXPECT_TRUE(tests.contains((*at)[1].str())) << "no test " << (*at)[1];
  }
  EXPECT_GT(checked, 30);
}

}  // namespace
}  // namespace vessant::test
