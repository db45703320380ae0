#include "options/colours.h"
#include "ui/push_button.h"
#include "ui/ui_test.h"

namespace {

class ControlsTest : public UiTest {};

constexpr Key::Code AltG{0x10022}, AltH{0x10023};
constexpr int Focused = 0x30;  // the default colour of input fields

}  // namespace

TEST_F(ControlsTest, TextStandsWhereItIsPutInItsColour) {
  TestDialog dialog(40, 10);
  dialog.addText(2, 1, "Label");
  dialog.addText(2, 2, "Coloured", 0x4F);
  dialog.addText(-1, 3, "Four");
  dialog.addText(-1, -1, " Title ");
  EXPECT_EQ(inside(dialog, 2, 1, 5), L"Label");
  EXPECT_EQ(attrInside(dialog, 2, 1), Grey);
  EXPECT_EQ(attrInside(dialog, 2, 2), 0x4F);
  EXPECT_EQ(inside(dialog, 17, 3, 4), L"Four");
  EXPECT_EQ(textAt(dialog.left() + 15, dialog.top(), 9), L"\u2550 Title \u2550");
}

TEST_F(ControlsTest, TextIsCopiedAndReadInTheConsolesCodePage) {
  TestDialog dialog(40, 10);
  char label[] = "\x84pfel";
  dialog.addText(2, 1, label);
  label[1] = 'x';
  dialog.redraw(-1);
  EXPECT_EQ(inside(dialog, 2, 1, 5), L"\u00E4pfel");
}

TEST_F(ControlsTest, TextTakesNeitherFocusNorMouse) {
  TestDialog dialog(40, 10);
  dialog.addText(2, 1, "Label");
  dialog.addButton(2, 3, Group::New, 'g', "Go");
  queueClick(dialog.originX() + 3, dialog.originY() + 1);
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(ControlsTest, AButtonShowsItsLabelInBrackets) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(1, 0, Group::New, &value, nullptr);
  dialog.addButton(2, 1, Group::New, 'g', "Go");
  dialog.addButton(2, 2, Group::Same, 'h', "Halt");
  EXPECT_EQ(inside(dialog, 2, 1, 7), L"[ Go ] ");
  EXPECT_EQ(inside(dialog, 2, 2, 9), L"[ Halt ] ");
}

TEST_F(ControlsTest, TheDefaultButtonsBracketsStandOutUnlessItHasTheFocus) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(1, 0, Group::New, &value, nullptr);
  dialog.addButton(2, 1, Group::New, 'g', "Go");
  dialog.addButton(12, 1, Group::Same, 'h', "Halt");
  const int row = dialog.originY() + 1, column = dialog.originX() + 2;
  EXPECT_EQ(attrsAt(column, row, 6), (std::vector<int>{0x71, Grey, Grey, Grey, Grey, 0x71}));
  EXPECT_EQ(attrsAt(column + 10, row, 8), std::vector<int>(8, Grey));
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(attrsAt(column, row, 6), std::vector<int>(6, Focused));
}

TEST_F(ControlsTest, HotCharactersShowInLabels) {
  TestDialog dialog(40, 10);
  bool value = false;
  int choice = 0;
  const char hot[] = {'c', 'h', 'r'};
  dialog.setHotChars(hot, 3);
  dialog.addCheck(1, 0, Group::New, &value, "Check");
  dialog.addButton(2, 1, Group::New, 'g', "Halt");
  dialog.addRadio(2, 2, Group::New, &choice, 1, "Radio");
  EXPECT_EQ(attrInside(dialog, 6, 0), 0x71);
  EXPECT_EQ(attrInside(dialog, 7, 0), Grey);
  EXPECT_EQ(attrInside(dialog, 4, 1), 0x71);
  EXPECT_EQ(attrInside(dialog, 6, 2), 0x71);
}

TEST_F(ControlsTest, ALabelWithoutAHotCharacterHasNoHighlight) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(1, 0, Group::New, &value, "Check");
  dialog.addButton(2, 1, Group::New, 'g', "Go");
  dialog.addButton(12, 1, Group::Same, 'h', "Halt");
  EXPECT_EQ(attrsAt(dialog.originX() + 6, dialog.originY(), 5), std::vector<int>(5, Grey));
  EXPECT_EQ(attrsAt(dialog.originX() + 12, dialog.originY() + 1, 8), std::vector<int>(8, Grey));
}

TEST_F(ControlsTest, SpaceAndEnterPressTheFocusedButton) {
  for (Key::Code key : {Key::Space, Key::Enter}) {
    TestDialog dialog(40, 10);
    dialog.addButton(2, 1, Group::New, 'g', "Go");
    dialog.addButton(12, 1, Group::Same, 'h', "Halt");
    queueKeys({Key::Right, key});
    EXPECT_EQ(dialog.run(), 'h') << key;
  }
}

TEST_F(ControlsTest, AButtonsHotKeyAndHotCharacterPressItFromAnywhere) {
  const struct {
    Key::Code key;
    Key::Code code;
  } rows[] = {{'h', 'h'}, {'H', 'h'}, {AltG, 'g'}, {AltH, 'h'}, {Key::F1, Key::F1}};
  for (const auto& row : rows) {
    Dialog dialog(-1, -2, 40, 10, Grey);
    bool value = false;
    const char hot[] = {0, 'g', 'h'};
    dialog.setHotChars(hot, 3);
    dialog.addCheck(1, 0, Group::New, &value, nullptr);
    dialog.addButton(2, 1, Group::New, 'g', "Go");
    dialog.addButton(12, 1, Group::Same, 'h', "Halt");
    dialog.addButton(22, 1, Group::Same, Key::F1, "Help");
    queueKey(row.key);
    EXPECT_EQ(dialog.run(), row.code) << row.key;
  }
}

TEST_F(ControlsTest, AButtonIsPressedByTheReleaseOverIt) {
  Dialog dialog(-1, -2, 40, 10, Grey);
  dialog.addButton(2, 1, Group::New, 'g', "Go");
  dialog.addButton(12, 1, Group::New, 'h', "Halt");
  queueClick(dialog.originX() + 12 + 7, dialog.originY() + 1);
  EXPECT_EQ(dialog.run(), 'h');
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(ControlsTest, ClicksBesideAButtonDontPressIt) {
  TestDialog dialog(40, 10);
  dialog.addButton(2, 1, Group::New, 'g', "Go");
  const int x = dialog.originX(), y = dialog.originY();
  queueClick(x + 1, y + 1);
  queueClick(x + 8, y + 1);
  queueClick(x + 3, y + 2);
  queueMouse(EventKind::Press, x + 3, y + 1);
  queueMouse(EventKind::Drag, x + 4, y + 1);
  EXPECT_EQ(dialog.runQueued(), TestDialog::Stop);
}

TEST_F(ControlsTest, ALongLabelIsCutAt43Bytes) {
  TestDialog dialog;
  dialog.addButton(2, 1, Group::New, 'g', std::string(50, 'x').c_str());
  EXPECT_EQ(inside(dialog, 2, 1, 49), L"[ " + std::wstring(43, L'x') + L" ]  ");
}

TEST_F(ControlsTest, ARowOfButtonsStandsInTheMiddleWithGapsOfTwo) {
  TestDialog dialog(42, 10);
  const int first = dialog.addButtons(-1, -1, Group::New, {{'g', "Go"}, {'h', "Halt"}});
  EXPECT_EQ(first, 0);
  EXPECT_EQ(inside(dialog, 0, 7, 40),
            std::wstring(12, L' ') + L"[ Go ]  [ Halt ]" + std::wstring(12, L' '));
  EXPECT_EQ(dialog.element(1)->group, 0);
  EXPECT_EQ(dialog.defaultExit(), 'g');
}

TEST_F(ControlsTest, ARowOfButtonsStartsAtItsColumn) {
  TestDialog dialog(42, 10);
  dialog.addText(0, 0, "x");
  EXPECT_EQ(dialog.addOkCancel(3, 2, Group::New), 1);
  EXPECT_EQ(inside(dialog, 3, 2, 19), L"[ OK ]  [ Cancel ] ");
  EXPECT_EQ(dialog.element(1)->hotKey, Key::Enter);
  EXPECT_EQ(dialog.element(2)->hotKey, Key::Esc);
  EXPECT_EQ(dialog.element(2)->group, 1);
}

TEST_F(ControlsTest, AnotherButtonCanBeMadeTheDefault) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(1, 0, Group::New, &value, nullptr);
  dialog.addButton(2, 1, Group::New, 'g', "Go");
  dialog.addButton(12, 1, Group::Same, 'h', "Halt");
  dialog.setDefaultButton(0);
  EXPECT_EQ(dialog.defaultExit(), 'g');
  dialog.setDefaultButton(2);
  EXPECT_EQ(dialog.defaultExit(), 'h');
  EXPECT_EQ(attrInside(dialog, 2, 1), Grey);
  EXPECT_EQ(attrInside(dialog, 12, 1), 0x71);
  dialog.setDefaultButton(99);
  EXPECT_EQ(dialog.defaultExit(), 'h');
}

TEST_F(ControlsTest, ACheckBoxShowsItsMarkAndItsLabelOnEitherSide) {
  TestDialog dialog(40, 10);
  bool on = true, off = false;
  dialog.addCheck(1, 0, Group::New, &on, "Right");
  dialog.addCheck(10, 1, Group::Same, &off, "Left", Label::Left);
  dialog.addCheck(1, 2, Group::Same, &on, nullptr);
  EXPECT_EQ(inside(dialog, 0, 0, 12), L" [X]  Right ");
  EXPECT_EQ(inside(dialog, 0, 1, 14), L"    Left  [ ] ");
  EXPECT_EQ(inside(dialog, 0, 2, 8), L" [X]    ");
}

TEST_F(ControlsTest, KeysChangeTheCheckBoxAndTheCallersVariable) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(1, 0, Group::New, &value, "Check");
  dialog.runKeys({Key::Space});
  EXPECT_TRUE(value);
  EXPECT_EQ(inside(dialog, 1, 0, 3), L"[X]");
  dialog.runKeys({Key::Space});
  EXPECT_FALSE(value);
  dialog.runKeys({Key::Insert, Key::Insert});
  EXPECT_TRUE(value);
  dialog.runKeys({Key::Delete, Key::Delete});
  EXPECT_FALSE(value);
}

TEST_F(ControlsTest, TheRunLoopCarriesOnWithACheckBoxsKeys) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(1, 0, Group::New, &value, "Check");
  dialog.addExitKey(Key::Space);
  queueKey(Key::Space);
  EXPECT_EQ(dialog.run(), Key::Space);
  EXPECT_TRUE(value);
}

TEST_F(ControlsTest, TheCursorSitsOnTheMarkOfAFocusedCheckBox) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addCheck(4, 2, Group::New, &value, "Check");
  dialog.addButton(2, 5, Group::New, 'g', "Go");
  dialog.runQueued();
  EXPECT_EQ(console->cursorSize(), 15);
  EXPECT_EQ(console->getCursorPos().x, dialog.originX() + 5);
  EXPECT_EQ(console->getCursorPos().y, dialog.originY() + 2);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(console->cursorSize(), 0);
}

TEST_F(ControlsTest, AClickOnTheBoxOrItsLabelToggles) {
  TestDialog dialog(40, 10);
  bool value = false, other = false, left = false;
  dialog.addCheck(1, 0, Group::New, &other, "Other");
  dialog.addCheck(1, 2, Group::New, &value, "Check");
  dialog.addCheck(20, 3, Group::New, &left, "Left", Label::Left);
  const int x = dialog.originX(), y = dialog.originY();
  queueClick(x + 3, y + 2);
  dialog.runQueued();
  EXPECT_TRUE(value);
  EXPECT_EQ(dialog.focus(), 1);
  EXPECT_EQ(inside(dialog, 1, 2, 3), L"[X]");
  queueClick(x + 10, y + 2);
  dialog.runQueued();
  EXPECT_FALSE(value);
  queueClick(x + 14, y + 3);
  dialog.runQueued();
  EXPECT_TRUE(left);
  queueClick(x + 11, y + 2);  // right of the label
  queueClick(x + 4, y + 2);   // between box and label
  dialog.runQueued();
  EXPECT_FALSE(value);
  EXPECT_FALSE(other);
}

TEST_F(ControlsTest, ACheckBoxsHotCharacterTogglesItAndTakesTheFocus) {
  TestDialog dialog(40, 10);
  bool value = false;
  const char hot[] = {0, 'g'};
  dialog.setHotChars(hot, 2);
  dialog.addButton(2, 5, Group::New, 'x', "Go");
  dialog.addCheck(1, 2, Group::New, &value, "Green");
  dialog.runKeys({AltG});
  EXPECT_TRUE(value);
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(ControlsTest, AThreeStateBoxGoesRoundByEverySetting) {
  TestDialog dialog(40, 10);
  unsigned char value = 0;
  dialog.addCheck3(1, 0, Group::New, &value, "State");
  EXPECT_EQ(inside(dialog, 0, 0, 12), L" [ ]  State ");
  dialog.runKeys({Key::Space});
  EXPECT_EQ(value, 1);
  EXPECT_EQ(inside(dialog, 1, 0, 3), L"[\u00B7]");
  dialog.runKeys({Key::Insert});
  EXPECT_EQ(value, 2);
  EXPECT_EQ(inside(dialog, 1, 0, 3), L"[X]");
  dialog.runKeys({Key::Delete});
  EXPECT_EQ(value, 2);
  EXPECT_EQ(inside(dialog, 1, 0, 3), L"[X]");
  queueClick(dialog.originX() + 7, dialog.originY());
  dialog.runQueued();
  EXPECT_EQ(value, 0);
  EXPECT_EQ(inside(dialog, 1, 0, 3), L"[ ]");
  EXPECT_EQ(dialog.element(0)->type(), ElementType::CheckBox3S);
}

TEST_F(ControlsTest, ArrowsSelectRadioButtonsAndWrap) {
  TestDialog dialog(40, 10);
  int value = 20;
  dialog.addRadio(1, 0, Group::New, &value, 10, "Ten");
  dialog.addRadio(1, 1, Group::Same, &value, 20, "Twenty");
  dialog.addRadio(1, 2, Group::Same, &value, 30, "Thirty");
  EXPECT_EQ(inside(dialog, 0, 0, 9), L" ( ) Ten ");
  dialog.runQueued();
  EXPECT_EQ(dialog.focus(), 1);
  EXPECT_EQ(inside(dialog, 1, 1, 3), L"(\u2022)");
  dialog.runKeys({Key::Down});
  EXPECT_EQ(value, 30);
  EXPECT_EQ(inside(dialog, 1, 1, 3), L"( )");
  EXPECT_EQ(inside(dialog, 1, 2, 3), L"(\u2022)");
  dialog.runKeys({Key::Down});
  EXPECT_EQ(value, 10);
  dialog.runKeys({Key::Up});
  EXPECT_EQ(value, 30);
}

TEST_F(ControlsTest, AClickSelectsARadioButtonOfAnotherGroupAndClearsTheOldMark) {
  TestDialog dialog(40, 10);
  int value = 1;
  dialog.addButton(2, 5, Group::New, 'x', "Go");
  dialog.addRadio(1, 0, Group::New, &value, 1, "One");
  dialog.addRadio(1, 1, Group::Same, &value, 2, "Two");
  queueClick(dialog.originX() + 3, dialog.originY() + 1);
  dialog.runQueued();
  EXPECT_EQ(value, 2);
  EXPECT_EQ(inside(dialog, 1, 0, 3), L"( )");
  EXPECT_EQ(inside(dialog, 1, 1, 3), L"(\u2022)");
  queueClick(dialog.originX() + 4, dialog.originY() + 0);  // right of the three columns
  dialog.runQueued();
  EXPECT_EQ(value, 2);
}

TEST_F(ControlsTest, TabToARadioGroupGoesToTheCurrentValue) {
  TestDialog dialog(40, 10);
  int value = 2;
  dialog.addButton(2, 5, Group::New, 'x', "Go");
  dialog.addRadio(1, 0, Group::New, &value, 1, "One");
  dialog.addRadio(1, 1, Group::Same, &value, 2, "Two");
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(dialog.focus(), 2);
  EXPECT_EQ(value, 2);
}

TEST_F(ControlsTest, TabFromAButtonRowReturnsToTheButtonLastUsed) {
  TestDialog dialog(40, 10);
  bool value = false;
  dialog.addOkCancel(-1, -1, Group::New);
  dialog.addCheck(1, 1, Group::New, &value, "Check");
  dialog.runKeys({Key::Right, Key::Tab});
  EXPECT_EQ(dialog.focus(), 2);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(dialog.focus(), 1);
}

TEST_F(ControlsTest, AProgressBarDrawsItsFraction) {
  TestDialog dialog(40, 10);
  float fraction = 0.26F;
  dialog.addProgress(1, 1, 10, &fraction);
  const auto bar = [](int done) {
    return std::wstring(done, L'\u2588') + std::wstring(10 - done, L'\u2591');
  };
  EXPECT_EQ(inside(dialog, 1, 1, 10), bar(2));
  fraction = 1.7F;
  EXPECT_EQ(inside(dialog, 1, 1, 10), bar(2));
  dialog.redraw(-1);
  EXPECT_EQ(inside(dialog, 1, 1, 10), bar(10));
  EXPECT_EQ(dialog.element(0)->type(), ElementType::ProgressIndicator);
  EXPECT_FALSE(dialog.element(0)->enabled);
}

TEST_F(ControlsTest, TypesHaveTheirNumbers) {
  TestDialog dialog(40, 12);
  bool check = false;
  unsigned char state = 0;
  int number = 0;
  Westring text;
  dialog.addText(0, 0, "x");
  dialog.addString(0, 1, Group::New, &text, 5, 5);
  dialog.addInteger(0, 2, Group::New, &number, 5, KeepFormat::No);
  dialog.addButton(0, 3, Group::New, 'x', "x");
  dialog.addRadio(0, 4, Group::New, &number, 1, "x");
  dialog.addCheck(0, 5, Group::New, &check, "x");
  dialog.addCheck3(0, 6, Group::New, &state, "x");
  dialog.addExitKey(Key::F5);
  const int types[] = {0, 5, 5, 6, 7, 8, 9, 12};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(static_cast<int>(dialog.element(i)->type()), types[i]) << i;
}
