#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <vector>

#include "commander/main_loop.h"
#include "console/key_codes.h"
#include "panels/picture/panel_draw.h"
#include "ui/help_window.h"

// Codes of menu items that no key reaches. Items of the left and the right menu come in pairs.
namespace MenuCode {

inline constexpr Key::Code LeftInfo{0x100000}, RightInfo{0x100193};
inline constexpr Key::Code LeftName{0x100001}, LeftExtension{0x100002}, LeftTime{0x100003},
    LeftSize{0x100004}, LeftUnsorted{0x100005}, LeftReverse{0x100006};
inline constexpr Key::Code RightName{0x100007}, RightExtension{0x100008}, RightTime{0x100009},
    RightSize{0x10000A}, RightUnsorted{0x10000B}, RightReverse{0x10000C};
inline constexpr Key::Code LeftBrief{0x10000D}, RightBrief{0x10000E};
inline constexpr Key::Code LeftFull{0x10000F}, RightFull{0x100010};
inline constexpr Key::Code LeftFilter{0x100012}, RightFilter{0x10019C};
inline constexpr Key::Code LeftReRead{0x100013}, RightReRead{0x10019B};
inline constexpr Key::Code LeftWide{0x100014}, RightWide{0x100015};
inline constexpr Key::Code LeftTree{0x100016}, RightTree{0x100017};
inline constexpr Key::Code LeftBriefWide{0x100018}, RightBriefWide{0x100019};
inline constexpr Key::Code LeftUnix{0x10001A}, RightUnix{0x10001B};

inline constexpr Key::Code SelectGroup{0x10006D}, UnselectGroup{0x10006E},
    InvertSelection{0x10006F}, RestoreSelection{0x100072};
inline constexpr Key::Code FileDateTime{0x100071};
inline constexpr Key::Code EditAssociations{0x1000D0}, EditUserMenu{0x1000D1};
inline constexpr Key::Code Configuration{0x10012C}, Colours{0x10012D}, Confirmations{0x100135};
inline constexpr Key::Code Hidden{0x10012E}, PathPrompt{0x10012F}, FullScreen{0x100131},
    Clock{0x100132}, TagDirectories{0x100133}, ThousandSeparator{0x100136}, RetainCount{0x100137},
    SaveSetup{0x100134};

}  // namespace MenuCode

// What must be so for a row to run; several are joined with |.
enum class When : unsigned {
  Always = 0,
  PanelsOn = 1U << 0U,          // at least one panel shows
  Files = 1U << 1U,             // the active panel lists files, in any style
  Entry = 1U << 2U,             // it has an entry under the cursor
  NoArchive = 1U << 3U,         // no archive is open in it
  Columns = 1U << 4U,           // its list stands in columns
  Searching = 1U << 5U,         // a quick search is open in it
  LineEmpty = 1U << 6U,         // nothing is typed on the command line
  TextBeforeCursor = 1U << 7U,  // something stands left of the line's cursor
  ShiftHeld = 1U << 8U,
  ShiftUp = 1U << 9U,
  CtrlHeld = 1U << 10U,
  AltHeld = 1U << 11U,
  EscTakesPanels = 1U << 12U,  // the option that Esc takes the panels off
  StarIsText = 1U << 13U,      // the option that the keypad's * is a character
};
constexpr When operator|(When a, When b) {
  return static_cast<When>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr bool includes(When conditions, When one) {
  return (static_cast<unsigned>(conditions) & static_cast<unsigned>(one)) ==
         static_cast<unsigned>(one);
}

// What is drawn when a row has run, or when none of its code's conditions held. All but the keys of
// the line take the cursor bar off before, so that a command draws on a clean row.
enum class Touches {
  CommandRow,  // the line alone
  Cursor,      // the bar comes back, nothing else
  StatusLine,  // also the status line
  Everything,  // also prompt, key bar and titles
};

struct Command;

// What a row runs; most commands need nothing of the main loop.
class Action {
 public:
  template <std::invocable Function>
  Action(Function function) : run_([function](MainLoop&, const Command&) { function(); }) {}
  template <std::invocable<MainLoop&> Function>
  Action(Function function)
      : run_([function](MainLoop& loop, const Command&) { function(loop); }) {}
  template <std::invocable<const Command&> Function>
  Action(Function function)
      : run_([function](MainLoop&, const Command& command) { function(command); }) {}

  void operator()(MainLoop& loop, const Command& command) const { run_(loop, command); }

 private:
  std::function<void(MainLoop&, const Command&)> run_;
};

struct MenuText {
  const char* text = nullptr;  // null: in no menu
  int quickLetter = 0;         // index in the text
};

// One row of the table: all that is known of a command.
struct Command {
  std::string name;              // unique
  std::vector<Key::Code> codes;  // of keys and menu items
  When when = When::Always;
  Action run;
  MenuText menu = {};
  std::function<bool()> mark = {};    // whether its menu item has the check mark
  const char* label = nullptr;        // on the key bar, for the function key among its codes
  HelpTopic help = HelpTopic::None;   // what F1 tells about it; None: as its whole room
  CursorBar bar = CursorBar::Off;     // On: the command itself takes the bar off where it must
  Touches touches = Touches::Cursor;  // the same for a whole room, which sets it
};
