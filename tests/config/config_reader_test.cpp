#include "config/config_reader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

#include "config/archiver_keys.h"
#include "config/config_table.h"
#include "foundation/utf8.h"
#include "language/association_set.h"
#include "language/environment.h"
#include "options/colours.h"
#include "options/options.h"
#include "support/turkish_locale.h"

namespace {

// Single lines, without a file and without a screen.
class ConfigLines : public testing::Test {
 protected:
  static std::string content(const AssociationSet& set) {
    std::string text;
    for (int i = 0; i < set.count(); ++i) {
      text += std::string(toUtf8(set.peek(i)->pattern).data()) + " -> " +
              toUtf8(set.peek(i)->command).data() + ";";
    }
    return text;
  }
  static std::string associations() { return content(associationSets().associations); }

  void take(const std::string& line) { reader_.parseConfigLine(line); }
  std::string told() { return std::exchange(told_, {}); }

  ConfigReader reader_{ConfigScope::Everything, [this](const std::string& text) {
                         told_ += text + ";";
                         return true;
                       }};

 private:
  std::string told_;
};

TEST_F(ConfigLines, EachOfTheFiveSetsTakesItsLinesInFileOrder) {
  AssociationSets& sets = associationSets();
  struct Row {
    const char* header;
    AssociationSet* set;
  };
  const Row rows[] = {{"[Associations]", &sets.associations},
                      {"[Viewer Associations]", &sets.viewers},
                      {"[Editor Associations]", &sets.editors},
                      {"[Colours]", &sets.fileColours},
                      {"[Directory Colours]", &sets.directoryColours}};
  for (const Row& row : rows) {
    take(row.header);
    take("  *.txt | *.md :  first one ");
    take("*.c: second");
    EXPECT_EQ(content(*row.set), "*.txt | *.md -> first one;*.c -> second;") << row.header;
  }
}

TEST_F(ConfigLines, ALineWithAColonAmongTheOptionsIsAnAssociation) {
  take("*.txt: edit !");
  EXPECT_EQ(associations(), "*.txt -> edit !;");
}

TEST_F(ConfigLines, TheFirstDelimiterOfAnOptionDecides) {
  take("d5=/a:b");
  take("*.txt: a=b");
  EXPECT_EQ(associations(), "*.txt -> a=b;");
}

TEST_F(ConfigLines, HeadersAreMatchedExactly) {
  take("[colours]");
  take("*.a: one");
  take(" [Colours] ");
  take("*.b: two");
  EXPECT_EQ(associations(), "*.a -> one;");
  EXPECT_EQ(content(associationSets().fileColours), "*.b -> two;");
}

TEST_F(ConfigLines, AnUnknownArchiversHeaderIsDropped) {
  for (const char* header : {"[Archiver:FOO]", "[ARCHIVER:zip]", "[archiver x: y"}) {
    take(header);
  }
  take("Hidden=on");
  EXPECT_TRUE(GlobalOptions::Hidden);
  EXPECT_EQ(told(), "");
  EXPECT_EQ(associations(), "");
}

TEST_F(ConfigLines, ALineWithoutADelimiterMeansNothing) {
  take("nothing here");
  take("");
  EXPECT_EQ(associations(), "");
}

TEST_F(ConfigLines, TheWordsAreTheSameInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  take("[ARCHIVER:XY]");
  EXPECT_EQ(associations(), "");
}

TEST_F(ConfigLines, ASwitchIsOnOnlyByTheWord) {
  using GlobalOptions::Hidden;
  for (const char* line : {"Hidden=ON", "hidden = on", "HIDDEN=On"}) {
    Hidden = false;
    take(line);
    EXPECT_TRUE(Hidden) << line;
  }
  for (const char* line : {"Hidden=1", "Hidden=yes", "Hidden=", "Hidden=on!"}) {
    Hidden = true;
    take(line);
    EXPECT_FALSE(Hidden) << line;
  }
}

TEST_F(ConfigLines, WordsAndNumbersAreReadByTheirKind) {
  using namespace GlobalOptions;
  struct Row {
    const char* line;
    const int* option;
    int value;
  };
  const Row rows[] = {{"TimeMode=24", &TimeMode, 24},
                      {"TimeMode=12", &TimeMode, 12},
                      {"TimeMode=24h", &TimeMode, 12},
                      {"TimeMode=xx", &TimeMode, 12},
                      {"LeftSort=rsize", &LeftSort, 8},
                      {"LeftSort=RTime", &LeftSort, 7},
                      {"LeftSort=unsorted", &LeftSort, 4},
                      {"LeftSort=nmae", &LeftSort, 0},
                      {"LeftStyle=briefwide", &LeftStyle, 3},
                      {"LeftStyle=UNIX", &LeftStyle, 4},
                      {"LeftStyle=tree", &LeftStyle, 1},
                      {"RightStyle=", &RightStyle, 1},
                      {"RightType=Info", &RightType, 1},
                      {"RightType=tree", &RightType, 0},
                      {"CMPSize=-12", &CMPSize, -12},
                      {"CMPSize=12 kB", &CMPSize, 12},
                      {"CMPSize=much", &CMPSize, 0},
                      {"CMPSize=99999999999", &CMPSize, 2147483647},
                      {"Lines = 0x20", &Lines, 0}};
  for (const Row& row : rows) {
    take(row.line);
    EXPECT_EQ(*row.option, row.value) << row.line;
  }
  EXPECT_EQ(told(), "");
}

TEST_F(ConfigLines, TheLeadCharacterIsOneThatAKeyCanType) {
  using GlobalOptions::CmdChar;
  for (const char* line :
       {"CmdChar=", "CmdChar= ", "CmdChar=\xc3\xa9", "CmdChar=\x01", "CmdChar=\x7f"}) {
    take(line);
    EXPECT_EQ(CmdChar, '!') << line;
  }
  take("CmdChar=#more");
  EXPECT_EQ(CmdChar, '#');
}

TEST_F(ConfigLines, TheColoursAreTakenOneByOne) {
  take("Colours=1 2 3");
  EXPECT_EQ(colourTable[0], 1);
  EXPECT_EQ(colourTable[2], 3);
  EXPECT_EQ(colourTable[3], 0x3E) << "the rest keeps its defaults";
  take("Colours=256 511 -1 x 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21");
  EXPECT_EQ(colourTable[0], 0);
  EXPECT_EQ(colourTable[1], 255);
  EXPECT_EQ(colourTable[2], 255);
  EXPECT_EQ(colourTable[3], 0);
  EXPECT_EQ(colourTable[17], 18);
}

TEST_F(ConfigLines, FormerKeysAreTakenInSilence) {
  take("Manual=netscape");
  take("use132=on");
  EXPECT_EQ(told(), "");
  EXPECT_TRUE(reader_.tookAll());
}

TEST_F(ConfigLines, AnUnknownKeyIsToldWithItsLineAndTheNextOnesAreTaken) {
  take("Clock=on");
  take("");
  take(" Foo = 1");
  take("d10=/tmp");
  take("dx=/tmp");
  take("Hidden=on");
  EXPECT_EQ(told(),
            "Bad directive (Foo) in td.ini, line 3;Bad directive (d10) in td.ini, line 4;"
            "Bad directive (dx) in td.ini, line 5;");
  EXPECT_TRUE(GlobalOptions::Hidden);
  EXPECT_FALSE(reader_.tookAll());
}

TEST_F(ConfigLines, AMessageOfALongKeyIsCutAtAWholeCharacter) {
  take(std::string(100, 'k') + "=1");
  EXPECT_EQ(told(), "Bad directive (" + std::string(64, 'k') + ";");
  take(std::string(63, 'k') + "\xc3\xa9\xc3\xa9=1");
  EXPECT_EQ(told(), "Bad directive (" + std::string(63, 'k') + ";");
}

TEST_F(ConfigLines, ShortcutsAreTakenByTheirDigit) {
  take("d5=/tmp");
  take("D0 = /a b");
  EXPECT_STREQ(toUtf8(GlobalOptions::directoryShortcuts[5]).data(), "/tmp");
  EXPECT_STREQ(toUtf8(GlobalOptions::directoryShortcuts[0]).data(), "/a b");
  EXPECT_EQ(told(), "");
}

TEST_F(ConfigLines, KeysBelowAnUnknownArchiverAreTakenByTheSectionBefore) {
  take("[Archiver:ARJ]");
  take("Extract=one");
  take("[Archiver:FOO]");
  take("extract=two");
  take("Unknown=three");
  EXPECT_STREQ(toUtf8(archiverKeys().text(Archiver::Arj, ArchiverKey::Extract)).data(), "two");
  EXPECT_EQ(told(), "");
  EXPECT_FALSE(reader_.tookAll());
}

TEST_F(ConfigLines, ALongTemplateIsKeptWhole) {
  const std::string value(3000, 'x');
  take("[Archiver:ZIP]");
  take("Delete=" + value);
  EXPECT_EQ(toUtf8(archiverKeys().text(Archiver::Zip, ArchiverKey::Delete)).data(), value);
}

TEST_F(ConfigLines, VariablesAreExpandedInTheirOrder) {
  setenv("HOME", "/home/me", 1);
  take("[Environment]");
  take("BASE=~/base");
  take("TDTEST=$BASE/bin:$TDNONE");
  take("=nothing");
  EXPECT_STREQ(configuredEnvironment().get("BASE"), "/home/me/base");
  EXPECT_STREQ(configuredEnvironment().get("TDTEST"), "/home/me/base/bin:");
  EXPECT_FALSE(reader_.tookAll());
}

TEST_F(ConfigLines, WhatHasNoPlaceInTheFileIsNoticed) {
  for (const char* line : {"# a comment", "[Unknown]", "[Archiver:FOO]", "Foo=1"}) {
    ConfigReader reader(ConfigScope::ListsOnly);
    reader.parseConfigLine(line);
    EXPECT_FALSE(reader.tookAll()) << line;
  }
  ConfigReader reader(ConfigScope::ListsOnly);
  for (const char* line : {"", "  ", "[Colours]", "*.c: red", "[General Options]", "d1=/x",
                           "Clock=on", "*.c: edit !", "Manual=x"}) {
    reader.parseConfigLine(line);
  }
  EXPECT_TRUE(reader.tookAll());
  reader.parseConfigLine(std::string("Clock=on\0rest", 13));
  EXPECT_FALSE(reader.tookAll());
}

TEST_F(ConfigLines, ForTheListsTheOptionsAreLeftAlone) {
  ConfigReader reader(ConfigScope::ListsOnly);
  for (const char* line : {"Hidden=on", "d1=/tmp", "*.c: edit !"}) reader.parseConfigLine(line);
  EXPECT_FALSE(GlobalOptions::Hidden);
  EXPECT_TRUE(GlobalOptions::directoryShortcuts[1].empty());
  EXPECT_EQ(associations(), "*.c -> edit !;");
}

TEST_F(ConfigLines, BytesThatAreNoTextAreKept) {
  take("Left=/tmp/\xff\xfe");
  EXPECT_STREQ(toUtf8(GlobalOptions::Left).data(), "/tmp/\xff\xfe");
}

TEST(ConfigTable, EachKeyStandsOnceInItsPlace) {
  EXPECT_STREQ(configKeywordTable[0].key, "AutoIndent");
  EXPECT_STREQ(configKeywordTable[33].key, "Manual");
  EXPECT_STREQ(configKeywordTable[ConfigKeywordCount - 1].key, "Colours");
  for (const ConfigKeyword& row : configKeywordTable) {
    ASSERT_NE(row.key, nullptr);
    EXPECT_EQ(findConfigKeyword(row.key), &row) << row.key;
    EXPECT_EQ(isWritten(row), row.key != std::string("Manual") && row.key != std::string("Use132"));
  }
  EXPECT_EQ(findConfigKeyword("Foo"), nullptr);
}

TEST(ConfigTable, AStyleThatIsATreeIsWrittenAsOne) {
  GlobalOptions::LeftStyle = 5;
  EXPECT_STREQ(optionText(*findConfigKeyword("LeftStyle")).data(), "tree");
  GlobalOptions::LeftSort = 9;
  EXPECT_STREQ(optionText(*findConfigKeyword("LeftSort")).data(), "unsorted");
  GlobalOptions::LeftType = 77;
  EXPECT_STREQ(optionText(*findConfigKeyword("LeftType")).data(), "files");
}

TEST(ArchiverDefaults, AreThoseOfTheTools) {
  using enum Archiver;
  using enum ArchiverKey;
  EXPECT_STREQ(ArchiverKeys::defaultText(Zip, CompressDirSpec), "! !\\*");
  EXPECT_STREQ(ArchiverKeys::defaultText(Rar, ExtractWithoutPath), "rar e -std");
  EXPECT_STREQ(ArchiverKeys::defaultText(Lharc, Compress), "lha a /s /e");
  EXPECT_STREQ(ArchiverKeys::defaultText(Arj, ExtractDirSpec), "!\\*.*");
  EXPECT_STREQ(ArchiverKeys::defaultText(Ace, ExtractListfileSwitch), "@");
  EXPECT_STREQ(ArchiverKeys::defaultText(Ha, Delete), "ha d");
  EXPECT_STREQ(ArchiverKeys::defaultText(Gzip, Extract), "gzip -dc %a > %f");
  EXPECT_STREQ(ArchiverKeys::defaultText(Tar, CompressListfileSwitch), "--files-from=");
}

TEST(ArchiverDefaults, ADefaultWithABlankAtItsEndComesBackWhole) {
  ArchiverKeys keys;
  keys.set(Archiver::Zip, "CompressListfileSwitch", "-@");
  EXPECT_STREQ(toUtf8(keys.text(Archiver::Zip, ArchiverKey::CompressListfileSwitch)).data(), "-@");
  keys.set(Archiver::Zip, "COMPRESSLISTFILESWITCH", "-@ <");
  EXPECT_STREQ(toUtf8(keys.text(Archiver::Zip, ArchiverKey::CompressListfileSwitch)).data(),
               "-@ < ");
}

}  // namespace
