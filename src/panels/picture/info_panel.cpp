#include "panels/picture/info_panel.h"

#include <algorithm>

#include "foundation/memory_facts.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/directory_info.h"
#include "panels/reader/volume_facts.h"

namespace {

constexpr int TitleRow = 0, RuleRow = 4, MemoryRow = 5, FreeMemoryRow = 6, ErrorRow = 7,
              TotalRow = 8, FreeRow = 9, UseRow = 10, PathRow = 11, NamesRow = 12;
constexpr char ProductTitle[] = "TD/X V" TD_VERSION;
constexpr wchar_t RuleLine = 0x2500;
constexpr int FigureWidth = 12;
constexpr int NarrowInterior = 38;  // of a panel on a screen of 80 columns
constexpr int WidestMargin = 13;
constexpr int NamesColumn = 1;
constexpr int ArchiveNameWidth = 25;

enum class Then { Stop, GoOn };

// The window with the layout of figures in it.
class InfoPage {
 public:
  explicit InfoPage(Win& window) : window_(window), width_(window.innerWidth()) {
    const int margin = std::clamp((width_ - NarrowInterior) / 2, 0, WidestMargin);
    figureEnd_ = FigureWidth + margin;
  }

  bool holds(int row) const { return row < window_.innerHeight(); }
  int rows() const { return window_.innerHeight(); }
  int width() const { return width_; }
  int figureEnd() const { return figureEnd_; }
  Win& window() { return window_; }

  void rule(int row) {
    if (holds(row)) window_.put(0, row, Westring(RuleLine, width_));
  }
  void centred(int row, const Westring& text) {
    if (holds(row)) window_.putCentred(row, text.data());
  }
  // The figure ends where all of them end, the text follows.
  void figure(int row, const Westring& number, const wchar_t* text) {
    if (!holds(row)) return;
    window_.put(0, row, padLeft(number, figureEnd_), colourOf(Colour::Tagged));
    window_.put(text);
  }
  void size(int row, uint64_t bytes, const wchar_t* text) {
    figure(row, sizeIn(bytes, figureEnd_), text);
  }
  void named(int row, const wchar_t* head, const Westring& name) {
    if (holds(row)) window_.put(NamesColumn, row, head + name);
  }
  static Westring sizeIn(uint64_t bytes, int width) {
    return GlobalOptions::ThousandSep ? formatSize(bytes, width) : formatPlainSize(bytes, width);
  }

 private:
  Win& window_;
  int width_;
  int figureEnd_;  // the column behind a figure's last digit
};

struct FileUse {
  uint64_t count = 0;
  uint64_t bytes = 0;
};

FileUse filesIn(const Panel& panel) {
  FileUse use;
  for (const entry* item : panel.entries) {
    if (item->isDirectory()) continue;
    ++use.count;
    use.bytes += item->size;
  }
  return use;
}

void drawMemory(InfoPage& page) {
  const auto memory = memoryFacts();
  if (!memory) return;
  page.size(MemoryRow, memory->total, L" total physical memory");
  page.size(FreeMemoryRow, memory->free, L" free physical memory");
}

// Two figures in one row: the line moves to the left where it would not end inside the window.
void drawUse(InfoPage& page, const FileUse& use) {
  if (!page.holds(UseRow)) return;
  const int tagged = colourOf(Colour::Tagged);
  const Westring middle = use.count == 1 ? L" file uses " : L" files use ";
  const Westring end = L" bytes in";
  const Westring count = GlobalOptions::ThousandSep ? groupDigits(use.count)
                                                    : formatPlainSize(use.count, page.figureEnd());
  const int room = page.width() - count.length() - middle.length() - end.length();
  const Westring bytes = InfoPage::sizeIn(use.bytes, std::min(room, page.figureEnd()));
  const int spare = room - bytes.length();
  page.window().put(std::clamp(page.figureEnd() - count.length(), 0, std::max(spare, 0)), UseRow,
                    count, tagged);
  page.window().put(middle.data());
  page.window().put(bytes.data(), tagged);
  page.window().put(end.data());
}

Then drawDisk(InfoPage& page, const Panel& shown) {
  struct stat info;
  if (const int error = statPath(shown.path, info)) {
    page.centred(ErrorRow, Westring(errorTextShort(error).data()));
    return Then::Stop;
  }
  uint64_t total = 0, free = 0, unit = 0;
  if (diskSpace(shown.path, total, free, unit) != 0) {
    page.centred(FreeRow, L"Cannot read drive");
    return Then::Stop;
  }
  page.size(TotalRow, total, L" total bytes");
  page.size(FreeRow, free, L" bytes free");
  drawUse(page, filesIn(shown));
  return Then::GoOn;
}

void drawArchive(InfoPage& page, const ArchiveFacts& facts) {
  page.size(TotalRow, facts.size, L" total uncompressed");
  page.size(FreeRow, facts.packed, L" total compressed");
  page.figure(UseRow, savingText(facts.size, facts.packed), L" total compression");
}

// Returns the first row behind.
int drawVolumeNames(InfoPage& page, const Westring& directory) {
  const VolumeFacts facts = volumeFacts(directory);
  int row = NamesRow;
  if (!facts.label.empty()) page.named(row++, L"Label       : ", facts.label);
  if (!facts.fileSystem.empty()) page.named(row++, L"File System : ", facts.fileSystem);
  if (!facts.serial.empty()) page.named(row++, L"Serial No   : ", facts.serial);
  return row;
}

int drawArchiveNames(InfoPage& page, const OpenArchive& archive, const ArchiveFacts& facts) {
  int row = NamesRow;
  page.named(row++, L"Archive : ", shortenPath(lastComponent(archive.path()), ArchiveNameWidth));
  if (!facts.type.empty()) page.named(row++, L"Type    : ", facts.type);
  return row;
}

// Draws down to the path; returns the row where the note's rule stands, or nothing to go on with.
int drawFacts(InfoPage& page, const Panel& shown) {
  page.centred(TitleRow, Westring(ProductTitle));
  page.rule(RuleRow);
  drawMemory(page);
  ArchiveFacts archived;
  if (shown.archive) {
    archived = shown.archive->facts();
    drawArchive(page, archived);
  } else if (drawDisk(page, shown) == Then::Stop) {
    return page.rows();
  }
  page.centred(PathRow, shortenPath(shownPath(shown), page.width()));
  return shown.archive ? drawArchiveNames(page, *shown.archive, archived)
                       : drawVolumeNames(page, shown.path);
}

}  // namespace

Westring savingText(uint64_t size, uint64_t packed) {
  constexpr double whole = 100.0;
  const double saving =
      size == 0 ? 0.0 : whole - whole * static_cast<double>(packed) / static_cast<double>(size);
  Estring text;
  text.format("%.1f%%", saving);
  return Westring(text);
}

void drawInfoPanel(Panel& panel) {
  Win& window = *panel.window;
  BatchScope batch;
  window.clear();
  InfoPage page(window);
  const Panel& shown = panelPair().other(panel);
  const int ruleRow = drawFacts(page, shown);
  panel.infoRows = std::min(ruleRow + 1, page.rows());
  if (!page.holds(ruleRow)) return;
  page.rule(ruleRow);
  DirectoryInfo(window, shown.path, ruleRow);
}
