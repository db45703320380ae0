#include "search_dialogs/entry_list_box.h"

#include "support/console_test.h"
#include "ui/dialog.h"

namespace {

constexpr int Rows = 7, Width = 74;
constexpr int Results = 1'000'000;

// Counts the rows that it draws.
class CountedList : public EntryListBox {
 public:
  using EntryListBox::EntryListBox;
  int takeDrawn() { return std::exchange(drawn_, 0); }

 protected:
  void drawItem(int row, int item, unsigned char attr) override {
    ++drawn_;
    EntryListBox::drawItem(row, item, attr);
  }

 private:
  int drawn_ = 0;
};

using EntryListBoxTest = ConsoleTest;

}  // namespace

TEST_F(EntryListBoxTest, AMillionResultsCostNoMoreThanTheRowsThatShow) {
  FFEntryStore store;
  FoundFile file;
  file.info.st_mode = S_IFREG;
  for (int i = 0; i < Results; ++i) {
    file.path = "/" + std::to_string(i);
    ASSERT_TRUE(store.add(file));
  }
  int selected = 0;
  Dialog dialog(1, 1, Width + 2, Rows + 2, 0x70);
  auto made = std::make_unique<CountedList>(dialog, 0, 0, Group::New, Width, Rows, store, &selected,
                                            Key::Enter, [] {});
  CountedList& list = *made;
  dialog.add(std::move(made));
  dialog.redraw(-1);
  list.takeDrawn();
  const auto press = [&list](Key::Code key) { list.handleMessage({.key = key}); };
  const auto shown = [&] {
    return screenText().find("/" + std::to_string(selected)) != std::string::npos;
  };
  press(Key::End);
  EXPECT_EQ(selected, Results - 1);
  EXPECT_LE(list.takeDrawn(), Rows);
  for (const Key::Code key : {Key::End, Key::Up, Key::PageUp, Key::PageUp, Key::Home, Key::PageDown,
                              Key::PageDown, Key::Down}) {
    press(key);
    EXPECT_TRUE(shown()) << selected;
    EXPECT_LE(list.takeDrawn(), Rows);
  }
  store.remove(selected, store.row(selected).path());
  list.setCount(store.count());
  EXPECT_LE(list.takeDrawn(), Rows);
  EXPECT_EQ(list.itemCount(), Results - 1);
}
