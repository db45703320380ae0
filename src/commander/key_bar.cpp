#include "commander/key_bar.h"

#include "console/key_codes.h"
#include "console/text_state.h"

namespace {

constexpr int LabelSets = 8;
constexpr int AltSet = 1, CtrlSet = 2, ShiftSet = 4;

constexpr const char* Labels[LabelSets][KeyBarFields] = {
    {"1Help", "2Menu", "3View", "4Edit", "5Copy", "6RenMov", "7Mkdir", "8Delete", "9PullDn",
     "10Quit"},
    {"1Left", "2Right", "3View..", "4Edit..", "5DStore", "6Object", "7Find", "8Histry", "9EGA Ln",
     "10Tree"},
    {"1Left", "2Right", "3Name", "4Exten", "5Time", "6Size", "7Unsort", "8Revers", "9", "10"},
    {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"},
    {"1Manual", "2MnMenu", "3View..", "4Edit..", "5Copy", "6Rename", "7MkArch", "8DelOne",
     "9SavSet", "10MenuRe"},
    {"1Brief", "2Full", "3Wide", "4BriefW", "5Unix", "6", "7FindRC", "8DirHst", "9ColChg", "10"},
    {"1", "2", "3", "4", "5SymLnk", "6", "7", "8", "9", "10"},
    {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}};

}  // namespace

const char* const* keyBarLabels(int shiftState) {
  int set = 0;
  if (shiftState & ShiftState::Alt) set += AltSet;
  if (shiftState & ShiftState::Ctrl) set += CtrlSet;
  if (shiftState & ShiftState::Shift) set += ShiftSet;
  return Labels[set];
}

void drawKeyBar(int shiftState) {
  drawKeyBarLine(keyBarLabels(shiftState));
}
