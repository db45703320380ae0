#include "commander/menu_items.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "commander/command.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"

namespace {

constexpr wchar_t Mark = 0x221A;

std::vector<int> markedItems(int menu) {
  std::vector<int> marked;
  for (size_t i = 0; i < menus()[menu].items.size(); ++i) {
    if (menus()[menu].items[i].mark == Mark) marked.push_back(static_cast<int>(i));
  }
  return marked;
}

TEST(MenuItems, EveryTextFitsItsMenuBesideTheMark) {
  for (const Menu& menu : menus()) {
    for (const menuItem& item : menu.items) {
      if (item.isSeparator()) continue;
      EXPECT_LE(static_cast<int>(strlen(item.text)) + 1, menu.width) << item.text;
      EXPECT_LT(item.quickLetter, static_cast<int>(strlen(item.text))) << item.text;
    }
  }
}

TEST(MenuItems, EveryTitleStandsInTheBarTextAtItsColumn) {
  for (const Menu& menu : menus()) {
    EXPECT_EQ(strncmp(MenuBarText + menu.column, menu.title, strlen(menu.title)), 0) << menu.title;
  }
}

TEST(MenuItems, NoTwoItemsShareACodeExceptThoseOfBothSides) {
  std::map<Key::Code, const char*> seen;
  for (const Menu& menu : menus()) {
    for (const menuItem& item : menu.items) {
      if (item.isSeparator()) continue;
      EXPECT_TRUE(seen.emplace(item.code, item.text).second)
          << item.text << " / " << seen[item.code];
    }
  }
}

TEST(MenuItems, MarksFromTheFifthRowOnStandOneRowAboveTheirItem) {
  Panel& panel = panelPair().side[0];
  panel.type = PanelType::Info;
  panel.sort = SortCode::Name;
  refreshMenuMarks();
  EXPECT_EQ(markedItems(LeftMenu), (std::vector<int>{4, 8}));
  panel.type = PanelType::Files;
  panel.style = PanelStyle::Tree;
  panel.sort = SortCode::Size + SortCode::Reverse;
  refreshMenuMarks();
  EXPECT_EQ(markedItems(LeftMenu), (std::vector<int>{5, 11, 13}));
  panel.style = PanelStyle::Full;
  panel.sort = SortCode::Name;
}

TEST(MenuItems, ListStylesAreMarkedOnTheirOwnRowsAndUnixDetailHasNoMark) {
  Panel& panel = panelPair().side[1];
  for (int style = 0; style <= 3; ++style) {
    panel.style = static_cast<PanelStyle>(style);
    refreshMenuMarks();
    EXPECT_EQ(markedItems(RightMenu), (std::vector<int>{style, 8}));
  }
  panel.style = PanelStyle::Unix;
  refreshMenuMarks();
  EXPECT_EQ(markedItems(RightMenu), (std::vector<int>{8}));
  panel.style = PanelStyle::Full;
}

TEST(MenuItems, OptionsAreMarkedFromHiddenFilesToRetainDirCount) {
  using namespace GlobalOptions;
  bool* options[] = {&Hidden,  &PathPrompt,  &FullScreen, &Clock,
                     &TagDirs, &ThousandSep, &RetainCount};
  for (bool* option : options) *option = false;
  refreshMenuMarks();
  EXPECT_TRUE(markedItems(OptionsMenu).empty());
  for (int i = 0; i < 7; ++i) {
    *options[i] = true;
    refreshMenuMarks();
    EXPECT_EQ(markedItems(OptionsMenu), (std::vector<int>{4 + i}));
    *options[i] = false;
  }
  setDefaultOptions();
}

}  // namespace
