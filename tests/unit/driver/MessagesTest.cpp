// Choosing the language, filling messages and the numbering of the error texts.

#include <string>

#include <gtest/gtest.h>

#include "launcher/driver/output/Messages.h"
#include "support/FakeRun.h"
#include "support/MessageFile.h"

namespace vessant::test {
namespace {

/// Messages for a value of LANG.
class MessagesIn {
 public:
  explicit MessagesIn(const std::string& lang) { platform_.environment["LANG"] = lang; }
  [[nodiscard]] const Messages& operator*() const { return messages_; }
  [[nodiscard]] const Messages* operator->() const { return &messages_; }

 private:
  FakePlatform platform_;
  Messages messages_{platform_};
};

struct Choice {
  const char* lang;
  const char* language;
};

constexpr Choice kChoices[] = {
    // English by name, and for want of anything else.
    {"", "en"},
    {"C", "en"},
    {"POSIX", "en"},
    {"C.UTF-8", "en"},
    {"C.utf8", "en"},
    {"english", "en"},
    {"en", "en"},
    {"en_US", "en"},
    {"en_GB.ISO8859-15@euro", "en"},
    {"nb_NO", "en"},
    {"nn_NO.UTF-8", "en"},
    {"uk_UA.UTF-8", "en"},
    {"xx", "en"},
    {"c", "en"},
    {"d", "en"},
    {" de", "en"},
    {"/usr/share/locale", "en"},
    // A code of two letters, alone and as a beginning.
    {"bg_BG.CP1251", "bg"},
    {"cs_CZ.ISO8859-2", "cs"},
    {"csb_PL", "cs"},
    {"da", "da"},
    {"de", "de"},
    {"de_DE.ISO8859-1", "de"},
    {"de_AT", "de"},
    {"deutsch", "de"},
    {"de@euro", "de"},
    {"el_GR", "el"},
    {"es_MX.UTF-8", "es"},
    {"fi_FI", "fi"},
    {"fil_PH", "fi"},
    {"fr_CA.UTF-8", "fr"},
    {"fr_F", "fr"},
    {"hr_HR", "hr"},
    {"hu_HU.UTF-8", "hu"},
    {"it_CH", "it"},
    {"ja_JP.eucJP", "ja"},
    {"japanese", "ja"},
    {"ko_KR.eucKR", "ko"},
    {"nl_BE@euro", "nl"},
    {"no_NO", "no"},
    {"norwegian", "no"},
    {"pl_PL", "pl"},
    {"ro_RO.UTF-8", "ro"},
    {"ru_RU.KOI8-R", "ru"},
    {"sk_SK", "sk"},
    {"sl_SI", "sl"},
    {"sv_SE.UTF-8", "sv"},
    {"tr_TR.UTF-8", "tr"},
    // Five letters win over the first two of them; other letters do not.
    {"pt", "pt"},
    {"pt_PT", "pt"},
    {"pt_BR", "pt_BR"},
    {"pt_BR.UTF-8", "pt_BR"},
    {"pt_BRx", "pt_BR"},
    {"pt_br", "pt"},
    {"pt_B", "pt"},
    {"pt-BR", "pt"},
    {"zh", "zh"},
    {"zh_CN", "zh"},
    {"zh_CN.GB2312", "zh"},
    {"zh_HK", "zh"},
    {"zh_TW", "zh_TW"},
    {"zh_TW.Big5", "zh_TW"},
    {"zh_TWN", "zh_TW"},
    {"zh_tw", "zh"},
    // Letters count as they are.
    {"DE_de", "en"},
    {"De", "en"},
    {"EN_US", "en"},
    {"PT_BR", "en"},
};

TEST(LanguageChoice, FollowsTheValueOfLang) {
  static_assert(std::size(kChoices) >= 40);
  for (const auto& [lang, language] : kChoices) {
    EXPECT_EQ(MessagesIn(lang)->formatMessage(0), language) << "LANG=" << lang;
  }
}

TEST(LanguageChoice, TakesEveryCodeOfTheCatalog) {
  for (int row = 0; row < kLanguageCount; ++row) {
    EXPECT_EQ(MessagesIn(catalogRows()[static_cast<std::size_t>(row)].language)->languageIndex(),
              row);
  }
}

TEST(LanguageChoice, IsEnglishWithoutLang) {
  const FakePlatform platform;
  EXPECT_EQ(Messages(platform).languageIndex(), 0);
}

TEST(LanguageChoice, ReadsNoOtherVariable) {
  FakePlatform platform;
  platform.environment = {{"LC_ALL", "de"}, {"LC_MESSAGES", "fr"}, {"LANGUAGE", "it"}};
  EXPECT_EQ(Messages(platform).languageIndex(), 0);
}

TEST(LanguageChoice, IsMadeAnewForEveryMessage) {
  FakePlatform platform;
  const Messages messages(platform);
  EXPECT_EQ(messages.formatMessage(0), "en");
  platform.environment["LANG"] = "sv_SE";
  EXPECT_EQ(messages.formatMessage(0), "sv");
}

TEST(Messages, FormatsEveryMessageOfEveryRowWithATitle) {
  for (const auto& [language, charset] : catalogRows()) {
    const MessageFile source = readMessageFile(language);
    const MessagesIn messages(language);
    for (const auto& [number, text] : source.texts) {
      std::string expected = text;
      const std::size_t place = expected.find("%s");
      if (place != std::string::npos) expected.replace(place, 2, "My Product 1.0");
      EXPECT_EQ(convert(str(messages->formatMessage(number, "My Product 1.0")), charset, "UTF-8"),
                expected)
          << language << ' ' << number;
    }
  }
}

TEST(Messages, PutTheArgumentInAsItStands) {
  const MessagesIn messages("C");
  EXPECT_EQ(messages->formatMessage(1, ""), "Initializing ...");
  EXPECT_EQ(messages->formatMessage(1, "50% %s\\n"), "Initializing 50% %s\\n...");
  EXPECT_EQ(messages->formatMessage(4, "unused"), "No Java(tm) Virtual Machine was found.");
}

TEST(Messages, AnswerTheLanguageCodeForNumberZero) {
  EXPECT_EQ(MessagesIn("pt_BR.UTF-8")->formatMessage(0, "unused"), "pt_BR");
}

TEST(Messages, SayWhichNumberIsNone) {
  const MessagesIn messages("de");
  EXPECT_EQ(messages->formatMessage(40), "Error displaying message: id(40)");
  EXPECT_EQ(messages->formatMessage(2147483647), "Error displaying message: id(2147483647)");
  EXPECT_EQ(messages->formatMessage(-1), "Error displaying message: id(-1)");
}

TEST(Messages, AreCutAfter1023Bytes) {
  const MessagesIn messages("C");
  const std::string beginning = "Initializing ";
  const std::string end = "...";
  const std::string fits(1023 - beginning.size() - end.size(), 'x');
  EXPECT_EQ(str(messages->formatMessage(1, SString(fits))), beginning + fits + end);
  EXPECT_EQ(str(messages->formatMessage(1, SString(fits + "y"))), beginning + fits + "y..");
  const std::string tooLong(5000, 'x');
  EXPECT_EQ(str(messages->formatMessage(1, SString(tooLong))),
            beginning + tooLong.substr(0, 1023 - beginning.size()));
}

TEST(Messages, MapTheErrorsToTheirTexts) {
  constexpr int kNumbers[] = {19, 20, 21, 22, 23, 24, 25, 26, 27, 28,
                              29, 30, 31, 32, 33, 36, 37, 38, 39};
  for (const auto& [language, charset] : catalogRows()) {
    const MessagesIn messages(language);
    const std::string fromWhere = charset;
    const MessageFile source = readMessageFile(language);
    for (int error = 0; error <= 18; ++error) {
      const std::string text = str(messages->errorText(static_cast<ErrorId>(error)));
      EXPECT_EQ(convert(text, fromWhere, "UTF-8"), source.texts.at(kNumbers[error]))
          << language << ' ' << error;
    }
  }
}

TEST(Messages, HaveNoTextForAnUnknownError) {
  const MessagesIn messages("C");
  for (const int error : {-1, 19, 20, 1000, -2147483647}) {
    EXPECT_EQ(messages->errorText(static_cast<ErrorId>(error)), "") << error;
    EXPECT_EQ(messages->formatError(static_cast<ErrorId>(error), "x"), "") << error;
  }
}

TEST(Messages, FillErrorTexts) {
  const MessagesIn messages("C");
  EXPECT_EQ(messages->errorText(ErrorId::TempRootMissing),
            "Cannot use %s as the temp directory because it does not exist. Please run the program "
            "again using the option -vs:tempdir <temp dir> to specify a different directory to "
            "use.");
  EXPECT_EQ(messages->formatError(ErrorId::TempRootMissing, "/no/where"),
            "Cannot use /no/where as the temp directory because it does not exist. Please run the "
            "program again using the option -vs:tempdir <temp dir> to specify a different "
            "directory to use.");
}

}  // namespace
}  // namespace vessant::test
