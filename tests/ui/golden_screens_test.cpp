#include <thread>

#include "ui/alert_dialog.h"
#include "ui/ui_test.h"

namespace {

class GoldenScreens : public UiTest {
 protected:
  void expectBox(const char* name, AlertButtons buttons, const wchar_t* text) {
    AlertDialog box(AlertLayout(text, L"/home/user/some/file.txt", buttons, 80), buttons,
                    AlertColour::Message);
    expectGolden(name);
  }
};

constexpr wchar_t Question[] = L"File already exists. Overwrite?";

}  // namespace

TEST_F(GoldenScreens, ADialogWithEveryControl) {
  Westring text = L"some text here", longText = L"a text that is longer than its field shows";
  int number = 42, radio = 2, selected = 1;
  bool on = true, off = false;
  unsigned char state = 1;
  float fraction = 0.4F;
  const char* const items[] = {"First item", "Second item", "Third item"};
  TestDialog dialog(64, 20);
  dialog.putFrameTitle(" All Controls ");
  dialog.addText(1, 0, "Text:");
  dialog.addString(8, 0, Group::Same, &text, 30, 40, FieldHistory::Filter);
  dialog.addString(8, 1, Group::New, &longText, 30, 80);
  dialog.addText(1, 2, "Number:");
  dialog.addInteger(10, 2, Group::New, &number, 6, KeepFormat::No);
  dialog.addCheck(1, 4, Group::New, &on, "On the right");
  dialog.addCheck(40, 4, Group::Same, &off, "On the left", Label::Left);
  dialog.addCheck3(1, 5, Group::New, &state, "Three states");
  dialog.addRadio(1, 7, Group::New, &radio, 1, "One");
  dialog.addRadio(1, 8, Group::Same, &radio, 2, "Two");
  dialog.addRadio(1, 9, Group::Same, &radio, 3, "Three");
  dialog.addList(30, 7, Group::New, 20, 6, items, 3, &selected, ListExit::DialogDefault);
  dialog.addProgress(1, 14, 40, &fraction);
  dialog.addOkCancel(-1, -1, Group::New);
  dialog.runQueued();
  expectGolden("all_controls");
}

TEST_F(GoldenScreens, TheBoxOfEachSetOfButtons) {
  expectBox("alert_ok", AlertButtons::Ok,
            L"Error opening the file, and this is quite a long text that has to be wrapped because "
            L"it does not fit on one line of the screen");
  expectBox("alert_ok_cancel", AlertButtons::OkCancel, Question);
  expectBox("alert_overwrite_one", AlertButtons::OverwriteOne, Question);
  expectBox("alert_retry_skip", AlertButtons::RetrySkip, Question);
  expectBox("alert_overwrite_many", AlertButtons::OverwriteMany, Question);
}

TEST_F(GoldenScreens, TheHistoryListBelowItsField) {
  fieldHistory(FieldHistory::Filter)->clear();
  for (const wchar_t* entry : {L"*.txt", L"*.cpp", L"*.h;*.cpp", L"file*", L"a", L"b", L"c"}) {
    addField(FieldHistory::Filter, entry);
  }
  Westring text = L"*";
  TestDialog dialog(60, 8);
  dialog.addText(1, 0, "Filter for left panel");
  dialog.addString(1, 1, Group::Same, &text, 40, 80, FieldHistory::Filter);
  dialog.addOkCancel(-1, -1, Group::New);

  // The list waits for a key: another thread reads the screen meanwhile, then lets it go.
  std::string shown;
  std::thread observer([this, &shown] {
    waitUntil([this] { return screenText().find("*.h;*.cpp") != std::string::npos; });
    shown = screenText();
    queueKeys({Key::Esc, Key::Esc});
  });
  queueKey(Key::AltDown);
  EXPECT_EQ(dialog.run(), Key::Esc);
  observer.join();
  expectGoldenText("history_list", shown);
}
