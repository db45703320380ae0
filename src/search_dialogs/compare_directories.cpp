#include "search_dialogs/compare_directories.h"

#include <fcntl.h>

#include <optional>
#include <string>
#include <vector>

#include "foundation/clock.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/system.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_draw.h"
#include "search/compare_contents.h"
#include "search/compare_rules.h"
#include "ui/alert.h"
#include "ui/dialog.h"
#include "ui/escape_watch.h"
#include "ui/help_window.h"

namespace {

constexpr int UpperQuarter = -4;
constexpr int Columns = 46, Rows = 14;
constexpr int LeftColumn = 1, RightColumn = 24;
constexpr int HeadRow = 1, FirstRadioRow = 3, CheckRow = 8;
constexpr int MaskColumn = 29, MaskWidth = 14, MaskLength = 100;
constexpr int OkColumn = 8, CancelColumn = 16, HelpColumn = 28, ButtonRow = 11;
constexpr char MaskHotKey[] = "m";
constexpr const char* DateLabels[] = {"Ignore Date", "Tag Newer", "Tag Older", "Tag Different"};
constexpr const char* SizeLabels[] = {"Ignore Size", "Tag Larger", "Tag Smaller", "Tag Different"};

constexpr int ProgressColumns = 40, ProgressRows = 6, ProgressWidth = 36;
constexpr int NameRow = 1, BarRow = 3;
constexpr int64_t FrameNs = 16'000'000;

void addRadios(Dialog& dialog, int column, int* value, const char* const (&labels)[4]) {
  for (int i = 0; i < 4; ++i) {
    dialog.addRadio(column, FirstRadioRow + i, i == 0 ? Group::New : Group::Same, value, i,
                    labels[i]);
  }
}

// False when it was left without OK.
bool askRules(bool* contents) {
  Dialog dialog(-1, UpperQuarter, Columns, Rows, colourOf(Colour::Messages));
  dialog.putFrameTitle(" Directory Compare ");
  dialog.put(LeftColumn, HeadRow, L"Date/Time");
  dialog.put(RightColumn, HeadRow, L"Size");
  dialog.putHotKeys(RightColumn, CheckRow, "Mask", MaskHotKey);
  addRadios(dialog, LeftColumn, &GlobalOptions::CMPTime, DateLabels);
  addRadios(dialog, RightColumn, &GlobalOptions::CMPSize, SizeLabels);
  dialog.addCheck(LeftColumn, CheckRow, Group::New, &GlobalOptions::CMPUnmatched, "Tag Unmatched");
  if (contents) {
    dialog.addCheck(LeftColumn, CheckRow + 1, Group::Same, contents, "Compare Contents");
  }
  const int mask = dialog.addString(MaskColumn, CheckRow, Group::New, &GlobalOptions::CMPMask,
                                    MaskWidth, MaskLength, FieldHistory::CompareMask);
  dialog.addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
  dialog.addButton(HelpColumn, ButtonRow, Group::Same, Key::F1, "Help");
  std::string hotChars(static_cast<size_t>(mask) + 1, '\0');
  hotChars.back() = MaskHotKey[0];
  dialog.setHotChars(hotChars.data(), static_cast<int>(hotChars.size()));
  for (;;) {
    const Key::Code key = dialog.run();
    if (key != Key::F1) return key == Key::Enter;
    helpWindow()->show(HelpTopic::DirectoryCompare);
  }
}

// Shows the file that is compared, and looks for Esc.
class ComparingWindow : public ContentWatch {
 public:
  explicit ComparingWindow(const std::vector<std::string>& names) : names_(names) {}

  bool goOn(size_t name, int64_t done, int64_t size) override {
    const int64_t now = systemClock().nanoseconds();
    if (!window_) open();
    if (now - drawn_ >= FrameNs) {
      draw(name, done, size);
      drawn_ = now;
    }
    return !watch_.pressed();
  }

 private:
  void open() {
    window_.emplace(-1, UpperQuarter, ProgressColumns, ProgressRows, colourOf(Colour::Messages));
    window_->putFrameTitle("Comparing");
    window_->addProgress(1, BarRow, ProgressWidth, &fraction_);
  }

  void draw(size_t name, int64_t done, int64_t size) {
    BatchScope batch;
    const Westring text = cutText(decodeFileName(names_[name].c_str()), ProgressWidth);
    window_->put(1, NameRow, padRight(text, ProgressWidth));
    fraction_ = size > 0 ? static_cast<float>(done) / static_cast<float>(size) : 0.0F;
    window_->redraw(-1);
  }

  const std::vector<std::string>& names_;
  EscapeWatch watch_;
  std::optional<Dialog> window_;
  float fraction_ = 0;
  int64_t drawn_ = 0;
};

class Compare {
 public:
  explicit Compare(const CompareRules& rules)
      : rules_(rules), left_(panelPair().side[0]), right_(panelPair().side[1]) {}

  void run() {
    const std::span<entry* const> left(left_.entries.begin(), left_.entries.end());
    const std::span<entry* const> right(right_.entries.begin(), right_.entries.end());
    ComparedNames names = matchNames(left, right);
    for (ComparedPair& pair : names.pairs) markByRules(pair, rules_);
    const bool whole = !rules_.contents || markByContents(names);
    if (whole) {
      tagCompared(left, right, names, rules_);
    } else {
      clearTags(left);
      clearTags(right);
    }
    for (Panel* panel : {&left_, &right_}) {
      recount(*panel);
      drawPanel(*panel);
    }
    if (whole && left_.taggedCount + right_.taggedCount == 0) {
      alert("No files meet the specified conditions", Westring(), AlertButtons::Ok,
            AlertColour::Error);
    }
  }

 private:
  // False when it was cancelled or a file couldn't be read, which has been told then.
  bool markByContents(ComparedNames& names) {
    std::vector<ComparedPair*> pairs;
    std::vector<std::string> files;
    for (ComparedPair& pair : names.pairs) {
      if (!contentsDecide(pair)) continue;
      if (sizesDiffer(pair)) {
        markDifferent(pair);
        continue;
      }
      pairs.push_back(&pair);
      files.push_back(bytePath(pair.left->name()));
    }
    if (files.empty()) return true;
    std::vector<ContentVerdict> verdicts;
    if (!compareFiles(files, verdicts)) return false;
    for (size_t i = 0; i < pairs.size(); ++i) {
      const ContentVerdict& verdict = verdicts[i];
      if (verdict.contents == Contents::Failed) return tell(verdict, files[i]);
      if (verdict.contents == Contents::Different) markDifferent(*pairs[i]);
    }
    return true;
  }

  bool compareFiles(const std::vector<std::string>& files, std::vector<ContentVerdict>& verdicts) {
    Descriptor directories[2];
    const Panel* const panels[] = {&left_, &right_};
    for (int side = 0; side < 2; ++side) {
      const Westring& path = panels[side]->path;
      directories[side] =
          Descriptor(System::open(bytePath(path).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
      if (directories[side].valid()) continue;
      alert(errorText(errno), path, AlertButtons::Ok, AlertColour::Error);
      return false;
    }
    ComparingWindow window(files);
    return compareContents(directories[0].get(), directories[1].get(), files, verdicts, window);
  }

  bool tell(const ContentVerdict& verdict, const std::string& file) const {
    const Panel& panel = verdict.failedLeft ? left_ : right_;
    alert(errorText(verdict.error), joinPath(panel.path, decodeFileName(file.c_str())),
          AlertButtons::Ok, AlertColour::Error);
    return false;
  }

  static void recount(Panel& panel) {
    panel.taggedCount = 0;
    panel.taggedSize = 0;
    for (const entry* item : panel.entries) {
      if (!item->tagged) continue;
      ++panel.taggedCount;
      panel.addTagged(item->size);
    }
  }

  const CompareRules& rules_;
  Panel& left_;
  Panel& right_;
};

bool canBeCompared(const Panel& panel) {
  return panel.showing && panel.isList() && panel.readError == 0;
}

}  // namespace

void compareDirectories() {
  const PanelPair& pair = panelPair();
  if (!canBeCompared(pair.side[0]) || !canBeCompared(pair.side[1])) return;
  const bool archived = pair.side[0].archive || pair.side[1].archive;
  if (!askRules(archived ? nullptr : &GlobalOptions::CMPContents)) return;
  CompareRules rules;
  rules.date = static_cast<DateRule>(GlobalOptions::CMPTime);
  rules.size = static_cast<SizeRule>(GlobalOptions::CMPSize);
  rules.unmatched = GlobalOptions::CMPUnmatched;
  rules.contents = !archived && GlobalOptions::CMPContents;
  rules.mask = GlobalOptions::CMPMask;
  Compare(rules).run();
}
