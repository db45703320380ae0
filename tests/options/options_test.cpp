#include "options/options.h"

#include <gtest/gtest.h>

#include "foundation/utf8.h"

namespace {

using namespace GlobalOptions;

std::string text(const Westring& value) {
  return toUtf8(value).data();
}

TEST(Options, SwitchesHaveTheirDefaults) {
  struct Row {
    const char* name;
    bool* option;
    bool value;
  };
#define SWITCH(name, value) \
  { #name, &name, value }
  const Row rows[] = {
      SWITCH(AutoIndent, false),     SWITCH(AutoSave, false),      SWITCH(BriefWordRight, true),
      SWITCH(CaseModRecurse, false), SWITCH(CaseModDirs, true),    SWITCH(CaseModFiles, true),
      SWITCH(Clock, false),          SWITCH(CMPContents, false),   SWITCH(CMPUnmatched, true),
      SWITCH(CtrlRDriveChng, false), SWITCH(DisableInvert, false), SWITCH(EscPanelSwitch, false),
      SWITCH(ExpandedTrees, true),   SWITCH(FFRootSearch, true),   SWITCH(FFRecurse, true),
      SWITCH(FFCase, false),         SWITCH(FFWholeWord, false),   SWITCH(FFMultiDrive, false),
      SWITCH(FullScreen, true),      SWITCH(Hidden, false),        SWITCH(KeepExtVisible, true),
      SWITCH(LeftShowing, true),     SWITCH(RightShowing, true),   SWITCH(NumLock, false),
      SWITCH(OverStrike, false),     SWITCH(PathPrompt, true),     SWITCH(PMClip, true),
      SWITCH(RetainCount, false),    SWITCH(Shadows, true),        SWITCH(SizeCountPause, false),
      SWITCH(StickyAlt, true),       SWITCH(TagDirs, false),       SWITCH(ThousandSep, false),
      SWITCH(ViewerWrap, true),      SWITCH(WaitDOS, false)};
#undef SWITCH
  for (const Row& row : rows) *row.option = !row.value;
  setDefaultOptions();
  for (const Row& row : rows) EXPECT_EQ(*row.option, row.value) << row.name;
}

TEST(Options, NumbersHaveTheirDefaults) {
  struct Row {
    const char* name;
    int* option;
    int value;
  };
#define NUMBER(name, value) \
  { #name, &name, value }
  const Row rows[] = {
      NUMBER(CMPSize, 0),   NUMBER(CMPTime, 1),     NUMBER(CodePage, 0),  NUMBER(Confirmations, 0),
      NUMBER(FontSize, 12), NUMBER(IndentWidth, 1), NUMBER(LeftSort, 0),  NUMBER(RightSort, 0),
      NUMBER(LeftStyle, 1), NUMBER(RightStyle, 1),  NUMBER(LeftType, 0),  NUMBER(RightType, 0),
      NUMBER(Lines, 0),     NUMBER(Columns, 0),     NUMBER(MaxHist, 500), NUMBER(MouSpeed, 8),
      NUMBER(Saver, 0),     NUMBER(ScrollDelay, 0), NUMBER(TabWidth, 8),  NUMBER(TimeMode, 12)};
#undef NUMBER
  for (const Row& row : rows) *row.option = -7;
  setDefaultOptions();
  for (const Row& row : rows) EXPECT_EQ(*row.option, row.value) << row.name;
}

TEST(Options, TextsAndCharactersHaveTheirDefaults) {
  Westring* empty[] = {&Background, &CaseFilter, &Editor,  &Editor2, &Left,
                       &Right,      &PathAppend, &TreeDir, &Viewer,  &Viewer2};
  for (Westring* option : empty) *option = L"changed";
  for (Westring& shortcut : directoryShortcuts) shortcut = L"changed";
  CmdChar = 'x';
  StartupSide = 'x';
  setDefaultOptions();
  for (Westring* option : empty) EXPECT_EQ(text(*option), "");
  for (Westring& shortcut : directoryShortcuts) EXPECT_EQ(text(shortcut), "");
  EXPECT_STREQ(CaseMod.data(), "ll");
  EXPECT_STREQ(FontFamily.data(), "DejaVu Sans Mono");
  EXPECT_STREQ(FFDriveList.data(), "");
  EXPECT_STREQ(TranslateCP.data(), "");
  EXPECT_EQ(text(CMPMask), "*");
  EXPECT_EQ(text(LeftFilter), "*");
  EXPECT_EQ(text(RightFilter), "*");
  EXPECT_EQ(CmdChar, '!');
  EXPECT_EQ(StartupSide, 'L');
}

TEST(Options, ANumberOutsideItsRangeIsCorrected) {
  struct Row {
    const char* name;
    int* option;
    int value;
    int corrected;
  };
#define NUMBER(name, value, corrected) \
  { #name, &name, value, corrected }
  const Row rows[] = {
      NUMBER(Lines, 0, 0),          NUMBER(Lines, 24, 25),         NUMBER(Lines, 25, 25),
      NUMBER(Lines, 250, 250),      NUMBER(Lines, 251, 25),        NUMBER(Lines, -1, 25),
      NUMBER(Columns, 0, 0),        NUMBER(Columns, 79, 80),       NUMBER(Columns, 80, 80),
      NUMBER(Columns, 500, 500),    NUMBER(Columns, 501, 80),      NUMBER(FontSize, 3, 12),
      NUMBER(FontSize, 4, 4),       NUMBER(FontSize, 72, 72),      NUMBER(FontSize, 73, 12),
      NUMBER(FontSize, 0, 12),      NUMBER(MaxHist, 0, 500),       NUMBER(MaxHist, -3, 500),
      NUMBER(MaxHist, 1, 1),        NUMBER(MaxHist, 99999, 99999), NUMBER(MouSpeed, 0, 8),
      NUMBER(MouSpeed, 1000, 1000), NUMBER(MouSpeed, 1001, 8),     NUMBER(TabWidth, 0, 8),
      NUMBER(TabWidth, 1, 1),       NUMBER(TabWidth, 9, 8),        NUMBER(CMPSize, -7, -7)};
#undef NUMBER
  for (const Row& row : rows) {
    *row.option = row.value;
    correctNumbers();
    EXPECT_EQ(*row.option, row.corrected) << row.name << " " << row.value;
  }
  setDefaultOptions();
}

}  // namespace
