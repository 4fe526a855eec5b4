// The pages hold what they promise. Every command of the page for authors runs, in the order of the
// page, in one directory that holds a jar; skipped where there is no JDK. Every line that the page
// for users has for a language makes UTF-8 of what the launcher says in it.

#include <regex>
#include <sstream>

#include "support/BuildPaths.h"
#include "system/RealJdk.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

namespace fs = std::filesystem;

/// The blocks of commands of a page, each with the line that it begins at.
std::vector<std::pair<int, std::string>> commandBlocks(const std::string& page) {
  std::vector<std::pair<int, std::string>> blocks;
  std::istringstream stream(page);
  bool isInside = false;
  int number = 0;
  for (std::string line; std::getline(stream, line);) {
    ++number;
    if (line == "```") isInside = false;
    if (isInside) blocks.back().second += line + "\n";
    if (line != "```sh") continue;
    isInside = true;
    blocks.emplace_back(number, "");
  }
  return blocks;
}

struct AuthorsPage : SystemTest {
  void SetUp() override {
    const std::string jar = std::string(kBinaryDir) + "/share/hello.jar";
    const std::optional<RealJdk> jdk = findRealJdk();
    const bool isFit = jdk && jdk->feature() >= 17 && fs::exists(jdk->home + "/bin/jlink");
    if (!isFit || !fs::exists(jar)) GTEST_SKIP() << "no JDK 17 or newer on this machine";
    tree.file("page/hello.jar", readFile(jar));
    environment = {{"PATH", fs::path(kVspack).parent_path().string() + ":/usr/bin:/bin"},
                   {"LANG", "C"},
                   {"TMPDIR", tempRoot},
                   {"JAVA_HOME", jdk->home}};
    startDirectory = tree.path("page");
    timeLimitSeconds = 240;
  }
};

TEST_F(AuthorsPage, ShowsCommandsThatRun) {
  const auto blocks = commandBlocks(readFile(std::string(kSourceDir) + "/docs/authors.md"));
  ASSERT_GT(blocks.size(), 8U) << "the blocks were not found";
  for (const auto& [line, commands] : blocks) {
    const ProcessResult result = runCommand({"/bin/sh", "-e", "-c", commands});
    EXPECT_EQ(result.status, 0) << "docs/authors.md:" << line << "\n" << result.out << result.err;
    EXPECT_EQ(result.err, "") << "docs/authors.md:" << line;
  }
}

TEST_F(AuthorsPage, NamesEveryCommandOfVspack) {
  const std::string page = readFile(std::string(kSourceDir) + "/docs/authors.md");
  std::istringstream help(runCommand({kVspack, "--help"}).out);
  int found = 0;
  bool isList = false;
  for (std::string line; std::getline(help, line);) {
    if (isList && line.starts_with("  ")) {
      const std::string name = line.substr(2, line.find(' ', 2) - 2);
      EXPECT_THAT(page, ::testing::HasSubstr("| `vspack " + name + " ")) << name;
      ++found;
    }
    isList = isList || line == "Subcommands:";
  }
  EXPECT_GT(found, 8);
}

struct UsersPage : SystemTest {};

TEST_F(UsersPage, MakesEachLanguageReadable) {
  environment["PATH"] = "/usr/bin:/bin";
  const std::string page = readFile(std::string(kSourceDir) + "/docs/users.md");
  const std::regex row(R"(\| `(LANG=\w+)` \| `\./setup\.bin(?: \\(\| iconv -c -f [-\w]+))?` \|)");
  int languages = 0;
  for (auto match = std::sregex_iterator(page.begin(), page.end(), row);
       match != std::sregex_iterator(); ++match) {
    const std::string filter = (*match)[2].matched ? (*match)[2].str() : "| iconv -c -f ASCII";
    // Without -c, which drops what it does not know, a wrong set is an error.
    const std::string strict = std::regex_replace(filter, std::regex(" -c "), " ");
    const ProcessResult result = runCommand(
        {"/bin/sh", "-c", (*match)[1].str() + " " + kLauncher + " -vs:in " + strict + " -t UTF-8"});
    EXPECT_EQ(result.status, 0) << (*match)[0] << result.err;
    EXPECT_GT(result.out.size(), 20U) << (*match)[0];
    ++languages;
  }
  EXPECT_EQ(languages, 27);
}

}  // namespace
}  // namespace vessant::test
