// Every language on the console: what the launcher prints is, byte for byte, what the translators
// wrote, in the language's own character set.

#include <algorithm>

#include "support/MessageFile.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

/// The translators' texts of one language, by number.
class Texts {
 public:
  explicit Texts(const CatalogRow& row) {
    for (const auto& [number, text] : readMessageFile(row.language).texts) {
      texts_[number] = convert(text, "UTF-8", row.charset);
    }
  }

  [[nodiscard]] std::string operator()(int number, const std::string& argument = "") const {
    std::string text = texts_.at(number);
    const std::size_t place = text.find("%s");
    return place == std::string::npos ? text : text.replace(place, 2, argument);
  }

 private:
  std::map<int, std::string> texts_;
};

struct Languages : SystemTest, ::testing::WithParamInterface<CatalogRow> {
  Languages() { environment["LANG"] = GetParam().language; }
  Texts text{GetParam()};
};

std::string nameOf(const ::testing::TestParamInfo<CatalogRow>& parameter) {
  return parameter.param.language;
}

TEST_P(Languages, ShowTheirStages) {
  addScript({"INITIALIZE_UI", "FIND_JVM 1 1", "VERIFY 0 1 3", "INSTALL_JVM 2", "INITIALIZE_UI",
             "ILAUNCH 3 5"});
  addLaunchScript("echo program");
  addJvmFile("17.0.1");
  file.add(kJvmInstaller, 9, "installer", "#!/bin/sh\n");
  EXPECT_THAT(run(), Ended(0, "Demo\n\n" + text(1, "Demo") + "\n\n" + text(9) + "\n" + text(18) +
                                  "\n" + text(10, "Java 17.0.1") + "\n\n" + text(3, "Java 17.0.1") +
                                  "\n" + text(18) + text(18) + text(31) + "\n" + text(29) + "\n\n" +
                                  text(8) + "\n" + text(17) + "\n\n" + text(1, "Demo") + "\n\n" +
                                  text(7, "Demo") + "\nprogram\n"));
}

TEST_P(Languages, ShowTheErrorsOfOptions) {
  const std::string missing = tree.path("missing");
  EXPECT_THAT(run({"-vs:in"}), Ended(255, text(30) + "\n"));
  EXPECT_THAT(run({"-vs:in", missing}), Ended(255, text(19) + text(33) + "\n" + text(33) + "\n"));
  EXPECT_THAT(run({"-vs:version", "-vs:log"}), Ended(255, "2.52\n" + text(25) + "\n"));
  EXPECT_THAT(run({"-vs:in", tree.file("input.tag", "ACTION: JUMP\n")}),
              Ended(255, text(24) + "JUMP\n" + text(24) + "JUMP\n"));
}

TEST_P(Languages, ShowTheErrorsOfScripts) {
  addScript({"INSTALL_JVM 0"});
  EXPECT_THAT(run(), Ended(255, text(28) + "\n"));
  const std::string missing = tree.path("missing");
  addJvmFile("17");
  pack();
  const std::string script = tree.file("find.script", tagBlock("INSTRUCTIONS", {"FIND_JVM 0 0"}));
  EXPECT_THAT(
      runBare({"-vs:tempdir", missing, "-vs:in",
               tree.file("input.tag", "ACTION: RUN_INSTRUCTIONS\nINSTRUCTIONS: " + script)}),
      Ended(255, text(39, missing) + "\n"));
}

TEST_P(Languages, ShowTheErrorsOfLauncherFiles) {
  file.add(9, 9, "no such type", "");
  EXPECT_THAT(run(), Ended(255, text(27) + "Invalid file type in file index.\n"));
  EXPECT_THAT(run({"-vs:extract"}), Ended(255, text(27) + "Invalid file type in file index.\n"));
  file = LauncherFileBuilder().launcherStub().add(kApplicationArchive, 9, "no/such/directory", "");
  pack();
  EXPECT_THAT(run({"-vs:extract"}), Ended(255, text(26) + text(36) + "2" + text(37) + "\n"));
}

INSTANTIATE_TEST_SUITE_P(Rows, Languages, ::testing::ValuesIn(catalogRows()), nameOf);

struct Choice {
  const char* lang;
  const char* code;
};

void PrintTo(const Choice& choice, std::ostream* out) {
  *out << ::testing::PrintToString(std::string(choice.lang));
}

struct LanguageChoice : SystemTest, ::testing::WithParamInterface<Choice> {};

TEST_P(LanguageChoice, FollowsTheSetting) {
  environment["LANG"] = GetParam().lang;
  const std::vector<CatalogRow>& rows = catalogRows();
  const auto language = std::find_if(rows.begin(), rows.end(), [&](const CatalogRow& row) {
    return std::string_view(row.language) == GetParam().code;
  });
  ASSERT_NE(language, rows.end());
  EXPECT_THAT(run({"-vs:in"}), Ended(255, Texts(*language)(30) + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Settings, LanguageChoice,
    ::testing::Values(Choice{"", "en"}, Choice{"C", "en"}, Choice{"POSIX", "en"},
                      Choice{"C.UTF-8", "en"}, Choice{"english", "en"}, Choice{"en_US", "en"},
                      Choice{"de_DE.ISO8859-1", "de"}, Choice{"pt_BR.UTF-8", "pt_BR"},
                      Choice{"pt_PT", "pt"}, Choice{"zh_TW.Big5", "zh_TW"},
                      Choice{"zh_CN.GB2312", "zh"}, Choice{"ja_JP.eucJP", "ja"},
                      Choice{"no_NO", "no"}, Choice{"nb_NO", "en"}, Choice{"DE", "en"},
                      Choice{"d", "en"}, Choice{"deutsch", "de"}));

struct LanguageSetting : SystemTest {};

TEST_F(LanguageSetting, IsNoOtherLocaleVariable) {
  environment.erase("LANG");
  environment["LC_ALL"] = "de_DE.UTF-8";
  environment["LC_MESSAGES"] = "fr";
  EXPECT_THAT(run({"-vs:in"}), Ended(255, Texts(catalogRows().front())(30) + "\n"));
}

}  // namespace
}  // namespace vessant::test
