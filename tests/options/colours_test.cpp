#include "options/colours.h"

#include <gtest/gtest.h>

namespace {

TEST(Colours, TheTableStartsWithItsDefaultsInOrder) {
  struct Row {
    Colour colour;
    const char* name;
    int value;
  };
  const Row rows[] = {{Colour::Panel, "Panel", 0x1B},
                      {Colour::Highlight, "Highlight", 0x30},
                      {Colour::Tagged, "Tagged", 0x1E},
                      {Colour::HighlightTagged, "Highlight-Tagged", 0x3E},
                      {Colour::Directories, "Directories", 0x1A},
                      {Colour::DirectoryHigh, "Directory High", 0x20},
                      {Colour::CommandLine, "Command Line", 0x07},
                      {Colour::Messages, "Messages", 0x70},
                      {Colour::Errors, "Errors", 0x4F},
                      {Colour::InputFields, "Input Fields", 0x30},
                      {Colour::ScreenSaver, "Screen Saver", 0x03},
                      {Colour::Menu, "Menu", 0x3F},
                      {Colour::MenuBar, "Menu Bar", 0x30},
                      {Colour::MenuHighlight, "Menu Highlight", 0x0F},
                      {Colour::MenuQuickKey, "Menu Quick Key", 0x0E},
                      {Colour::DisabledMenu, "Disabled Menu", 0x07},
                      {Colour::FileViewer, "File Viewer", 0x1B},
                      {Colour::Clock, "Clock", 0x30}};
  ASSERT_EQ(std::size(rows), static_cast<size_t>(ColourCount));
  for (unsigned char& attr : colourTable) attr = 0;
  defaultColours();
  for (int i = 0; i < ColourCount; ++i) {
    EXPECT_EQ(static_cast<int>(rows[i].colour), i);
    EXPECT_STREQ(colourAttributeNames[i], rows[i].name);
    EXPECT_EQ(colourOf(rows[i].colour), rows[i].value) << rows[i].name;
  }
}

TEST(ColourPhrase, WordsSetForegroundAndBackground) {
  struct Row {
    const wchar_t* phrase;
    int base;
    int result;
  };
  const Row rows[] = {{L"on red", 0x1B, 0x4B},
                      {L"yellow", 0x1B, 0x16},
                      {L"bright yellow", 0x1B, 0x1E},
                      {L"bright white on blue", 0x70, 0x1F},
                      {L"gre", 0x1B, 0x12},
                      {L"green", 0x1B, 0x12},
                      {L"GREENISH", 0x1B, 0x12},
                      {L"gray", 0x1B, 0x10},
                      {L"red on bright cyan", 0x1B, 0xB4},
                      {L"on bright black", 0x1B, 0x8B},
                      {L"black", 0x1B, 0x10},
                      {L"magenta on white", 0x00, 0x75},
                      {L"  bright   red  ", 0x20, 0x2C},
                      {L"red blue", 0x00, 0x05},
                      {L"on on red", 0x17, 0x47},
                      {L"", 0x1B, 0x1B},
                      {L"   ", 0x1B, 0x1B}};
  for (const Row& row : rows) {
    EXPECT_EQ(colourFromText(row.phrase, static_cast<unsigned char>(row.base)), row.result)
        << row.base << " at row " << &row - rows;
  }
}

}  // namespace
