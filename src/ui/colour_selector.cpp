#include "ui/colour_selector.h"

#include "ui/dialog.h"

namespace {
constexpr int ForegroundMask = 0x0F;
constexpr int BackgroundMask = 0xF0;
constexpr int BackgroundStep = 0x10;

bool isColourKey(Key::Code key) {
  return key == 'f' || key == 'F' || key == 'b' || key == 'B';
}
}  // namespace

unsigned char steppedAttribute(unsigned char attr, Key::Code key) {
  const int background = attr & BackgroundMask;
  switch (key) {
    case Key::Code('f'):
      return static_cast<unsigned char>(background | ((attr + 1) & ForegroundMask));
    case Key::Code('F'):
      return static_cast<unsigned char>(background | ((attr - 1) & ForegroundMask));
    case Key::Code('b'):
      return static_cast<unsigned char>(attr + BackgroundStep);
    case Key::Code('B'):
      return static_cast<unsigned char>(attr - BackgroundStep);
    default:
      return attr;
  }
}

ColourSelector::ColourSelector(Dialog& dialog, int x, int y, Group newGroup, int width, int rows,
                               const char* const* items, int count, unsigned char* attributes,
                               int* selected, Key::Code exitOnEnter)
    : ListBoxString(dialog, x, y, newGroup, width, rows, items, count, selected, exitOnEnter),
      attributes_(attributes) {}

void ColourSelector::drawItem(int row, int item, unsigned char attr) {
  const bool real = item < itemCount();
  const bool marked = real && isSelected(item);
  putRow(row, itemText(item), real ? attributes_[item] : attr);
  dialog_.put(x() - 1, y() + row, marked ? L">" : L" ");
  dialog_.put(x() + width(), y() + row, marked ? L"<" : L" ");
}

bool ColourSelector::handleKey(Key::Code key) {
  if (!isColourKey(key)) return ListBoxString::handleKey(key);
  if (itemCount() > 0) {
    unsigned char& attr = attributes_[selectedItem()];
    attr = steppedAttribute(attr, key);
    drawCursorRow();
  }
  return true;
}
