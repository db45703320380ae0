#pragma once

#include <string>

#include "foundation/locale_settings.h"
#include "foundation/names.h"
#include "foundation/utf8.h"
#include "language/association_set.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_window.h"
#include "support/console_test.h"
#include "support/exact_text.h"
#include "support/temp_dir.h"

// Both panels on the real screen, their listings made by hand.
class DrawnPanelsTest : public ConsoleTest {
 protected:
  static constexpr uint16_t SomeDate = (29 << 9) | (7 << 5) | 4;  // 2009-07-04
  static constexpr uint16_t SomeTime = (13 << 11) | (5 << 5);     // 13:05

  void SetUp() override {
    ConsoleTest::SetUp();
    startAfresh();
  }
  void TearDown() override {
    ConsoleTest::TearDown();
    startAfresh();
  }

  Panel& left() { return panelPair().side[0]; }
  Panel& right() { return panelPair().side[1]; }

  void setScreen(int columns, int rows) {
    console->setGeometry(columns, rows, Estring(), 0);
    fetchScreenSize();
  }
  void open() {
    openPanelWindow(0);
    openPanelWindow(1);
    drawCursor(panelPair().activeSide, CursorBar::On);
  }

  entry& addFile(Panel& panel, const std::string& name, uint64_t size = 0) {
    EntryPtr item(newEntry(decodeFileName(name.c_str()).data()));
    item->size = size;
    item->date = SomeDate;
    item->time = SomeTime;
    item->mode = 0644;
    item->sortGroup = SortGroup::File;
    entry& result = *item;
    panel.entries.add(std::move(item));
    return result;
  }
  entry& addDirectory(Panel& panel, const std::string& name) {
    entry& result = addFile(panel, name);
    result.attributes = Attribute::Directory;
    result.mode = 0755;
    result.sortGroup = name == ".." ? SortGroup::Parent : SortGroup::Directory;
    return result;
  }
  // f000, f001 and so on, each of its number in bytes.
  void addNumbered(Panel& panel, int count) {
    for (int i = 0; i < count; ++i) {
      char name[16];
      snprintf(name, sizeof name, "f%03d", i);
      addFile(panel, name, static_cast<uint64_t>(i));
    }
  }
  // A link whose target is known without a disk.
  entry& addLink(Panel& panel, const std::string& name, const wchar_t* target) {
    entry& item = addFile(panel, name);
    item.attributes |= Attribute::Link;
    auto known = std::make_unique<TLinkTargetCacheEntry>();
    known->path = joinPath(panel.path, item.name());
    known->target = target;
    panel.linkTargets.insert(known.release());
    return item;
  }
  static void tag(Panel& panel, int index) {
    panel.entries[index]->tagged = 1;
    ++panel.taggedCount;
    panel.taggedSize += static_cast<int64_t>(panel.entries[index]->size);
  }

  // The rows of the left or right panel's window alone.
  std::string panelText(int side) const {
    const PanelPair& pair = panelPair();
    std::string result;
    for (int y = 0; y < pair.panelRows + 4; ++y) {
      result += rowText(side * pair.panelWidth(), y, pair.panelWidth()) + "\n";
    }
    return result;
  }
  // The colours of the same rows, one letter a cell: those of the entries' rows and the titles.
  std::string panelColours(int side) const {
    const PanelPair& pair = panelPair();
    std::string result;
    for (int y = 0; y < pair.panelRows + 4; ++y) {
      for (int x = 0; x < pair.panelWidth(); ++x) {
        result += colourLetter(attrAt(side * pair.panelWidth() + x, y));
      }
      result += "\n";
    }
    return result;
  }
  static char colourLetter(int attr) {
    if (attr == colourOf(Colour::Panel)) return '.';
    if (attr == colourOf(Colour::Highlight)) return 'H';
    if (attr == colourOf(Colour::Tagged)) return 't';
    if (attr == colourOf(Colour::HighlightTagged)) return 'T';
    if (attr == colourOf(Colour::Directories)) return 'd';
    if (attr == colourOf(Colour::DirectoryHigh)) return 'D';
    // A line between columns or a link's mark on the bar.
    if ((attr & 0xF0) == (colourOf(Colour::Highlight) & 0xF0)) return 'h';
    if ((attr & 0xF0) == (colourOf(Colour::DirectoryHigh) & 0xF0)) return 'g';
    return '?';
  }
  std::string statusText(int side) const {
    const PanelPair& pair = panelPair();
    return rowText(side * pair.panelWidth() + 1, pair.panelRows + 2, pair.panelWidth() - 2);
  }

 private:
  static void startAfresh() {
    panelPair().side[1].window.reset();
    panelPair().side[0].window.reset();
    panelPair() = PanelPair();
    GlobalOptions::setDefaultOptions();
    localeSettings = LocaleSettings();
    associationSets().fileColours.clear();
    associationSets().directoryColours.clear();
    for (Panel& panel : panelPair().side) panel.path = L"/home/me";
    if (console) fetchScreenSize();
  }
};
