#include "filecommands/object_command.h"

#include <algorithm>

#include "filecommands/chosen_items.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "panels/picture/panel_draw.h"
#include "ui/dialog.h"

namespace {

constexpr int FewLines = 6, Lines = 8;
constexpr int UpperQuarter = -4;
constexpr int LeastWidth = 40, MostWidth = 70, FrameAndMargin = 4;
constexpr int HeadRow = 0, NameRow = 1, OfferRow = 3;
constexpr int LabelColumn = 1, TitleColumn = 8, TitleWidth = 33, TitleLength = 250;
constexpr int CheckColumn = 1;

int outerWidth(int widest) {
  const int width = std::clamp(widest, LeastWidth, MostWidth);
  return width + (width & 1) + FrameAndMargin;
}

// True on Enter. What was filled in has no use here.
bool askOne(const Westring& name, bool directory) {
  Westring title;
  Dialog dialog(-1, UpperQuarter, outerWidth(name.length()), directory ? FewLines : Lines,
                colourOf(Colour::Messages));
  dialog.putCentred(HeadRow, L"Make an object for");
  dialog.putCentred(NameRow, shortenPath(name, MostWidth).data());
  if (!directory) {
    dialog.put(LabelColumn, OfferRow, L"Title:");
    dialog.addString(TitleColumn, OfferRow, Group::New, &title, TitleWidth, TitleLength);
  }
  dialog.addOkCancel(-1, -1, Group::New);
  return dialog.run() == Key::Enter;
}

bool askTagged(int count) {
  bool fullScreen = false;
  Estring head;
  head.format("Make %d objects", count);
  Dialog dialog(-1, UpperQuarter, outerWidth(0), Lines, colourOf(Colour::Messages));
  dialog.putCentred(HeadRow, head.data());
  dialog.addCheck(CheckColumn, OfferRow, Group::New, &fullScreen, "Fullscreen session");
  dialog.addOkCancel(-1, -1, Group::New);
  return dialog.run() == Key::Enter;
}

}  // namespace

void objectCommand(Panel& panel) {
  const ChosenItems items = chosenItems(panel, ParentEntry::PassedOver);
  if (items.empty()) return;
  if (!items.tagged) {
    static_cast<void>(askOne(items.name, items.single().isDirectory()));
  } else if (askTagged(static_cast<int>(items.entries.size()))) {
    for (entry* item : items.entries) markDone(panel, *item);
    drawPanel(panel);
  }
}
