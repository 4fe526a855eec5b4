// Every language on the console: what the launcher prints is, byte for byte, what the translators
// wrote, in the language's own character set.

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include <iconv.h>

#include "support/BuildPaths.h"
#include "system/SystemTest.h"

namespace vessant::test {
namespace {

struct Language {
  const char* code;
  const char* charset;
};

void PrintTo(const Language& language, std::ostream* out) {
  *out << language.code;
}

constexpr Language kLanguages[] = {
    {"en", "ASCII"},      {"bg", "CP866"},      {"cs", "ISO-8859-2"}, {"da", "CP850"},
    {"de", "CP850"},      {"el", "ISO-8859-7"}, {"es", "CP850"},      {"fi", "CP850"},
    {"fr", "CP850"},      {"hr", "CP1250"},     {"hu", "ISO-8859-2"}, {"it", "CP850"},
    {"ja", "EUC-JP"},     {"ko", "EUC-KR"},     {"nl", "ASCII"},      {"no", "CP850"},
    {"pl", "ISO-8859-2"}, {"pt", "CP850"},      {"pt_BR", "CP850"},   {"ro", "ISO-8859-2"},
    {"ru", "ISO-8859-5"}, {"sk", "CP1250"},     {"sl", "CP1250"},     {"sv", "CP850"},
    {"tr", "CP857"},      {"zh", "GB2312"},     {"zh_TW", "BIG5"},
};

std::string convert(const std::string& text, const char* charset) {
  const iconv_t converter = iconv_open(charset, "UTF-8");
  std::string result(text.size() * 4 + 16, '\0');
  char* in = const_cast<char*>(text.data());
  char* out = result.data();
  std::size_t inLeft = text.size();
  std::size_t outLeft = result.size();
  const std::size_t replaced = iconv(converter, &in, &inLeft, &out, &outLeft);
  iconv_close(converter);
  if (replaced != 0 || inLeft != 0) throw std::runtime_error("cannot convert " + text);
  result.resize(result.size() - outLeft);
  return result;
}

/// The translators' texts of one language, by number.
class Texts {
 public:
  explicit Texts(const Language& language) {
    std::ifstream file(std::string(kSourceDir) + "/native/launcher/driver/output/messages/" +
                       language.code + ".msg");
    for (std::string line; std::getline(file, line);) {
      const std::size_t open = line.find('"');
      if (line.empty() || line[0] < '0' || line[0] > '9') continue;
      texts_[std::stoi(line)] =
          convert(line.substr(open + 1, line.rfind('"') - open - 1), language.charset);
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

struct Languages : SystemTest, ::testing::WithParamInterface<Language> {
  Languages() { environment["LANG"] = GetParam().code; }
  Texts text{GetParam()};
};

std::string nameOf(const ::testing::TestParamInfo<Language>& parameter) {
  return parameter.param.code;
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

INSTANTIATE_TEST_SUITE_P(Rows, Languages, ::testing::ValuesIn(kLanguages), nameOf);

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
  const auto* language = std::find_if(
      std::begin(kLanguages), std::end(kLanguages),
      [&](const Language& row) { return std::string_view(row.code) == GetParam().code; });
  ASSERT_NE(language, std::end(kLanguages));
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
  EXPECT_THAT(run({"-vs:in"}), Ended(255, Texts(kLanguages[0])(30) + "\n"));
}

}  // namespace
}  // namespace vessant::test
