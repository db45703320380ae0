#include "ui/check_box.h"
#include "ui/colour_selector.h"
#include "ui/dialog.h"
#include "ui/integer_field.h"
#include "ui/list_box.h"
#include "ui/plain_elements.h"
#include "ui/progress_indicator.h"
#include "ui/push_button.h"
#include "ui/radio_button.h"
#include "ui/string_field.h"

namespace {
constexpr int ButtonGap = 2;
}  // namespace

int Dialog::add(std::unique_ptr<DialogElement> element) {
  elements_.push_back(std::move(element));
  elements_.back()->draw();
  return elementCount() - 1;
}

int Dialog::addText(int x, int y, const char* text, unsigned char attr) {
  return addText(x, y, dialogLabel(text), attr);
}

int Dialog::addText(int x, int y, const Westring& text, unsigned char attr) {
  return add(std::make_unique<StaticText>(*this, x, y, text, attr != 0 ? attr : this->attr()));
}

int Dialog::addButton(int x, int y, Group group, Key::Code exitCode, const char* text) {
  return add(std::make_unique<PushButton>(*this, x, y, group, exitCode, text));
}

int Dialog::addButtons(int x, int y, Group group, const std::vector<ButtonSpec>& buttons) {
  int total = -ButtonGap;
  for (const ButtonSpec& button : buttons) total += PushButton::widthOf(button.text) + ButtonGap;
  const int row = y < 0 ? innerHeight() + y : y;
  int column = x < 0 ? (innerWidth() - total) / 2 : x;
  const int first = elementCount();
  for (const ButtonSpec& button : buttons) {
    addButton(column, row, group, button.exitCode, button.text);
    group = Group::Same;
    column += PushButton::widthOf(button.text) + ButtonGap;
  }
  return first;
}

int Dialog::addOkCancel(int x, int y, Group group) {
  return addButtons(x, y, group, {{Key::Enter, "OK"}, {Key::Esc, "Cancel"}});
}

int Dialog::addString(int x, int y, Group group, Westring* text, int width, int maxLength,
                      FieldHistory history) {
  return add(std::make_unique<StringField>(*this, x, y, group, text, width, maxLength, history));
}

int Dialog::addInteger(int x, int y, Group group, int* value, int width, KeepFormat keepFormat,
                       FieldHistory history) {
  return add(std::make_unique<IntegerField>(*this, x, y, group, value, width, keepFormat, history));
}

int Dialog::addCheck(int x, int y, Group group, bool* value, const char* label, Label side) {
  return add(std::make_unique<CheckBox>(*this, x, y, group, value, label, side));
}

int Dialog::addCheck3(int x, int y, Group group, unsigned char* value, const char* label,
                      Label side) {
  return add(std::make_unique<CheckBox3S>(*this, x, y, group, value, label, side));
}

int Dialog::addRadio(int x, int y, Group group, int* value, int myValue, const char* label) {
  return add(std::make_unique<RadioButton>(*this, x, y, group, value, myValue, label));
}

int Dialog::addExitKey(Key::Code key) {
  return add(std::make_unique<ExitKey>(*this, key));
}

int Dialog::addProgress(int x, int y, int width, const float* fraction) {
  return add(std::make_unique<ProgressIndicator>(*this, x, y, width, fraction));
}

int Dialog::addList(int x, int y, Group group, int width, int rows, const char* const* items,
                    int count, int* selected, Key::Code exitOnEnter) {
  return add(std::make_unique<ListBoxString>(*this, x, y, group, width, rows, items, count,
                                             selected, exitOnEnter));
}

int Dialog::addList(int x, int y, Group group, int width, int rows, EstringStore* items,
                    int* selected, Key::Code exitOnEnter) {
  return add(std::make_unique<ListBoxEstring>(*this, x, y, group, width, rows, items, selected,
                                              exitOnEnter));
}

int Dialog::addList(int x, int y, Group group, int width, int rows, FnStringStore* items,
                    int* selected, Key::Code exitOnEnter) {
  return add(std::make_unique<ListBoxFnString>(*this, x, y, group, width, rows, items, selected,
                                               exitOnEnter));
}

int Dialog::addColourSelector(int x, int y, Group group, int width, int rows,
                              const char* const* items, int count, unsigned char* attributes,
                              int* selected, Key::Code exitOnEnter) {
  return add(std::make_unique<ColourSelector>(*this, x, y, group, width, rows, items, count,
                                              attributes, selected, exitOnEnter));
}
