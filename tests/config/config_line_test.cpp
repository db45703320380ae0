#include "config/config_line.h"

#include <gtest/gtest.h>

#include "foundation/utf8.h"
#include "language/association_set.h"
#include "support/turkish_locale.h"

namespace {

class ConfigLines : public testing::Test {
 protected:
  void SetUp() override {
    AssociationSets& sets = associationSets();
    for (AssociationSet* set : {&sets.associations, &sets.viewers, &sets.editors, &sets.fileColours,
                                &sets.directoryColours}) {
      set->clear();
    }
  }
  void TearDown() override { SetUp(); }

  static std::string content(const AssociationSet& set) {
    std::string text;
    for (int i = 0; i < set.count(); ++i) {
      text += std::string(toUtf8(set.peek(i)->pattern).data()) + " -> " +
              toUtf8(set.peek(i)->command).data() + ";";
    }
    return text;
  }

  ConfigSection section_ = ConfigSection::GeneralOptions;
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
    EXPECT_EQ(parseConfigLine(row.header, section_), ConfigLine::Taken);
    EXPECT_EQ(parseConfigLine("  *.txt | *.md :  first one ", section_), ConfigLine::Taken);
    EXPECT_EQ(parseConfigLine("*.c: second", section_), ConfigLine::Taken);
    EXPECT_EQ(content(*row.set), "*.txt | *.md -> first one;*.c -> second;") << row.header;
  }
}

TEST_F(ConfigLines, ALineWithAColonAmongTheOptionsIsAnAssociation) {
  EXPECT_EQ(parseConfigLine("*.txt: edit !", section_), ConfigLine::Taken);
  EXPECT_EQ(content(associationSets().associations), "*.txt -> edit !;");
}

TEST_F(ConfigLines, TheFirstDelimiterOfAnOptionDecides) {
  EXPECT_EQ(parseConfigLine("d5=/a:b", section_), ConfigLine::KeyAndValue);
  EXPECT_EQ(parseConfigLine("*.txt: a=b", section_), ConfigLine::Taken);
  EXPECT_EQ(content(associationSets().associations), "*.txt -> a=b;");
}

TEST_F(ConfigLines, HeadersAreMatchedExactly) {
  parseConfigLine("[colours]", section_);
  EXPECT_EQ(section_, ConfigSection::GeneralOptions);
  parseConfigLine(" [Colours] ", section_);
  EXPECT_EQ(section_, ConfigSection::Colours);
}

TEST_F(ConfigLines, AnUnknownArchiversHeaderIsDropped) {
  for (const char* header : {"[Archiver:FOO]", "[ARCHIVER:zip]", "[archiver x: y"}) {
    EXPECT_EQ(parseConfigLine(header, section_), ConfigLine::Taken);
  }
  EXPECT_EQ(section_, ConfigSection::GeneralOptions);
  EXPECT_EQ(content(associationSets().associations), "");
}

TEST_F(ConfigLines, ALineWithoutADelimiterMeansNothing) {
  EXPECT_EQ(parseConfigLine("nothing here", section_), ConfigLine::Taken);
  EXPECT_EQ(parseConfigLine("", section_), ConfigLine::Taken);
  EXPECT_EQ(content(associationSets().associations), "");
}

TEST_F(ConfigLines, EveryHeaderSetsItsSection) {
  for (int i = 0; i < ConfigSectionCount; ++i) {
    parseConfigLine(sectionTable[i], section_);
    EXPECT_EQ(static_cast<int>(section_), i) << sectionTable[i];
  }
}

TEST_F(ConfigLines, TheWordsAreTheSameInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  EXPECT_EQ(parseConfigLine("[ARCHIVER:XY]", section_), ConfigLine::Taken);
  EXPECT_EQ(content(associationSets().associations), "");
}

}  // namespace
