#include "panels/commands/selection.h"

#include <algorithm>

#include "console/key_codes.h"
#include "foundation/fold.h"
#include "foundation/names.h"
#include "language/filter_expression.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/directory_tree.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/status_line.h"
#include "ui/dialog.h"

namespace {

constexpr const wchar_t* ProtectedNames[] = {L"descript.ion", L"EA DATA. SF", L"WP ROOT. SF"};

constexpr int DialogTop = 6;
constexpr int DialogLines = 10;
constexpr int DialogColumns = 34;
constexpr int ExpressionWidth = 30;
constexpr int ExpressionLength = 511;

enum class Directories { Left, Taken };

Directories flipped(Directories which) {
  return which == Directories::Left ? Directories::Taken : Directories::Left;
}

// Whether directories take part, from the option and the keys held.
Directories directoriesByKeys(int shiftState) {
  const bool shift = shiftState & ShiftState::Shift;
  return GlobalOptions::TagDirs != shift ? Directories::Taken : Directories::Left;
}

Westring& lastExpression() {
  static Westring expression = L"*";
  return expression;
}

bool canTag(const Panel& panel) {
  return panel.isList();
}

bool isShownTree(const Panel& panel) {
  return panel.showing && panel.isTree();
}

bool isOnScreen(const Panel& panel, int index) {
  return index >= panel.top && index < panel.top + panel.pageSize;
}

// Which entries a group command may touch.
bool takesPart(const entry& item, TagMode mode, Directories directories) {
  if (item.isDirectory() && directories == Directories::Left) return false;
  return mode == TagMode::Untag || !isProtectedFromGroups(item.name());
}

Estring groupHeading(TagMode mode, Directories directories) {
  Estring heading;
  heading.format("%s the files%-12s", mode == TagMode::Tag ? "Select" : "Unselect",
                 directories == Directories::Taken ? "/directories" : "");
  return heading;
}

// Asks for the expression; false on Esc. Alt-D changes whether directories take part.
bool askExpression(TagMode mode, Westring& expression, Directories& directories) {
  Dialog dialog(-1, DialogTop, DialogColumns, DialogTop + DialogLines - 1,
                colourOf(Colour::Messages));
  dialog.addString(1, 1, Group::New, &expression, ExpressionWidth, ExpressionLength,
                   FieldHistory::GroupSelect);
  dialog.addExitKey(Key::AltD);
  dialog.addText(19, 3, " Alt-D=Dirs ");
  for (;;) {
    dialog.put(1, 0, groupHeading(mode, directories).data());
    const Key::Code ended = dialog.run();
    if (ended != Key::AltD) return ended != Key::Esc && ended != Dialog::ProgramEnds;
    directories = flipped(directories);
  }
}

}  // namespace

bool isProtectedFromGroups(const wchar_t* name) {
  return std::any_of(std::begin(ProtectedNames), std::end(ProtectedNames),
                     [name](const wchar_t* one) { return compareNoCase(name, one) == 0; });
}

bool changeTag(Panel& panel, entry& item, TagMode mode) {
  if (!canTag(panel) || sameName(item.name(), ParentName)) return false;
  const bool tag = mode == TagMode::Flip ? !item.tagged : mode == TagMode::Tag;
  if (tag == (item.tagged != 0)) return false;
  item.tagged = tag;
  panel.taggedCount += tag ? 1 : -1;
  panel.addTagged(tag ? item.size : -item.size);
  return true;
}

void toggleTag(Panel& panel, int index, TagMode mode) {
  if (index < 0 || index >= panel.count()) return;
  if (!changeTag(panel, *panel.entries[index], mode)) return;
  if (isOnScreen(panel, index)) drawEntry(panel, index);
  drawStatusLine(panel);
}

void selectAll(Panel& panel, TagMode mode, int shiftState) {
  if (isShownTree(panel)) {
    if (mode == TagMode::Tag) directoryTree()->expand(panel, TreeReach::Subtree);
    if (mode == TagMode::Untag) directoryTree()->collapse(panel, TreeReach::Subtree);
    return;
  }
  if (!panel.showing || !canTag(panel)) return;
  const Directories directories =
      mode == TagMode::Untag ? Directories::Taken : directoriesByKeys(shiftState);
  for (entry* item : panel.entries) {
    if (takesPart(*item, mode, directories)) changeTag(panel, *item, mode);
  }
  drawPanel(panel);
}

void groupSelectDialog(Panel& panel, TagMode mode, int shiftState) {
  if (isShownTree(panel)) {
    if (mode == TagMode::Tag) directoryTree()->expand(panel, TreeReach::Line);
    if (mode == TagMode::Untag) directoryTree()->collapse(panel, TreeReach::Line);
    return;
  }
  if (!panel.showing || !canTag(panel)) return;
  Directories directories =
      mode == TagMode::Untag ? Directories::Taken : directoriesByKeys(shiftState);
  Westring expression = lastExpression();
  if (!askExpression(mode, expression, directories)) return;
  lastExpression() = expression;
  for (entry* item : panel.entries) {
    if (takesPart(*item, mode, directories) && evaluateFilter(expression.data(), item)) {
      changeTag(panel, *item, mode);
    }
  }
  drawPanel(panel);
}

void restoreSelection(Panel& panel) {
  if (!canTag(panel)) return;
  for (entry* item : panel.entries) {
    changeTag(panel, *item, item->wasTagged ? TagMode::Tag : TagMode::Untag);
  }
  drawPanel(panel);
}
