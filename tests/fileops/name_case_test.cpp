#include "fileops/name_case.h"

#include <gtest/gtest.h>

#include "foundation/utf8.h"
#include "support/turkish_locale.h"

namespace {

std::string cased(const char* name, const char* setting) {
  return toUtf8(withCase(decodeFileName(name), nameCaseOf(Estring(setting)))).data();
}

}  // namespace

TEST(NameCase, EachRuleDoesItsWork) {
  const struct {
    const char* name;
    const char* setting;
    const char* result;
  } rows[] = {
      {"ReadMe.TXT", "ll", "readme.txt"},
      {"ReadMe.txt", "uu", "README.TXT"},
      {"ReadMe.TXT", "nl", "ReadMe.txt"},
      {"ReadMe.TXT", "un", "README.TXT"},
      {"o'neil 2nd", "mn", "O'Neil 2nd"},
      {"2nd LETTER-to_you", "mn", "2nd Letter-To_You"},
      {"don't", "mn", "Don't"},
      {"''x", "mn", "''X"},
      {"a b", "mm", "A B"},
      {"letter.txt", "mm", "Letter.Txt"},
      {"noextension", "un", "NOEXTENSION"},
      {"noextension", "nu", "noextension"},
      {".Profile", "ul", ".profile"},
      {"ends.", "uu", "ENDS."},
      {"..", "uu", ".."},
      {"", "uu", ""},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(cased(row.name, row.setting), row.result) << row.name << " " << row.setting;
  }
}

TEST(NameCase, OnlyWhatFollowsTheLastDotIsTheExtension) {
  EXPECT_EQ(cased("Archive.Tar.GZ", "nl"), "Archive.Tar.gz");
  EXPECT_EQ(cased("archive.tar.gz", "un"), "ARCHIVE.TAR.gz");
}

TEST(NameCase, LettersOfAllAlphabetsComeAndGo) {
  EXPECT_EQ(cased("Ärger.Öl", "ll"), "ärger.öl");
  EXPECT_EQ(cased("ärger.öl", "uu"), "ÄRGER.ÖL");
  EXPECT_EQ(cased("ΣΊΣΥΦΟΣ", "ll"), "σίσυφοσ");
  EXPECT_EQ(cased("война и мир", "mn"), "Война И Мир");
  EXPECT_EQ(cased("straße", "un"), "STRAßE");
}

TEST(NameCase, TheLocaleHasNoSay) {
  const TurkishLocale locale;
  EXPECT_EQ(cased("TITLE.INI", "ll"), "title.ini");
  EXPECT_EQ(cased("title.ini", "uu"), "TITLE.INI");
}

TEST(NameCase, BytesThatAreNoCharactersStay) {
  EXPECT_EQ(cased("A\xC3(\xFF.B", "ll"), "a\xC3(\xFF.b");
  EXPECT_EQ(cased("\xE9\xE0x a", "mn"), "\xE9\xE0X A");
}

TEST(NameCase, TheSettingIsTwoLettersAndWhatItDoesNotSayIsKept) {
  EXPECT_EQ(cased("aB.cD", ""), "aB.cD");
  EXPECT_EQ(cased("aB.cD", "u"), "AB.cD");
  EXPECT_EQ(cased("aB.cD", "xy"), "aB.cD");
  for (const char* setting : {"lu", "mn", "nn", "ul"}) {
    EXPECT_STREQ(settingOf(nameCaseOf(Estring(setting))).data(), setting);
  }
}
