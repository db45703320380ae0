#include "tools/user_menu_file.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <vector>

#include "foundation/bounded_lines.h"
#include "foundation/fold.h"
#include "foundation/names.h"
#include "foundation/place.h"
#include "foundation/regular_file.h"
#include "foundation/utf8.h"
#include "language/typed_path.h"

namespace {

constexpr char IncludeWord[] = "!include ";
constexpr char Blanks[] = " \t\v\f\r";
constexpr char CannotOpen[] = "Unable to open included menu";
constexpr char IncludesItself[] = "Included menu includes itself";

std::string trimmed(const std::string& text) {
  const size_t first = text.find_first_not_of(Blanks);
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

bool beginsWithBlank(const std::string& line) {
  return std::string_view(Blanks).find(line[0]) != std::string_view::npos;
}

bool isComment(const std::string& line) {
  return line[0] == '#' || line[0] == ';';
}

Westring upperCase(const std::string& utf8) {
  Westring text = fromUtf8(utf8.c_str());
  foldString(text.data());
  return text;
}

// All of a menu's files, one in the other.
class MenuReader {
 public:
  explicit MenuReader(const MenuTeller& tell) : tell_(tell) {}

  // False when the content can't be had: then nothing of it counts.
  bool readOpen(const Descriptor& file, const Westring& path, MenuStore& menu) {
    struct stat info;
    std::string content;
    if (System::fstat(file.get(), &info) != 0) return false;
    if (readWhole(file, content, LongestMenu) != 0) return false;
    open_.push_back(idOf(info));
    Place place{parentOf(path), {{&menu, nullptr}}};
    BoundedLines lines(content);
    for (std::string line; !place.levels.empty() && lines.next(line);) takeLine(line, place);
    while (!place.levels.empty()) closeMenu(place);
    open_.pop_back();
    return true;
  }

 private:
  // Where the lines go: a menu, and the entry that commands and a submenu belong to.
  struct Level {
    MenuStore* menu;
    MenuEntry* entry;
  };
  // How far one file has been read.
  struct Place {
    Westring directory;
    std::vector<Level> levels;  // empty at the end
    size_t tooDeep = 0;         // menus open below the deepest one
  };

  void takeLine(const std::string& line, Place& place);
  void openSubmenu(Place& place);
  void closeMenu(Place& place);
  void include(const std::string& utf8Name, const Westring& directory, MenuStore& menu);
  void tell(const char* text, const Westring& file);

  const MenuTeller& tell_;
  std::vector<FileId> open_;  // the files that are being read
  int submenus_ = 0;          // that are open, in all of them
  int includes_ = 0;
  bool tells_ = true;
};

MenuEntry* addEntry(MenuStore& menu, const std::string& line, size_t colon) {
  const Westring key = upperCase(trimmed(line.substr(0, colon)));
  const Key::Code code = menuKeyCode(key);
  if (code == Key::NoKey) return nullptr;
  auto entry = std::make_unique<MenuEntry>();
  entry->keyCode = code;
  entry->key = toUtf8(key);
  entry->title = trimmed(line.substr(colon + 1)).c_str();
  menu.greatestKeyLength = std::max(menu.greatestKeyLength, key.length());
  menu.add(entry.get());
  return entry.release();
}

// True when an entry waits for the menu that a "{" opens.
bool takesSubmenu(const MenuEntry* entry) {
  return entry != nullptr && entry->commands.count() == 0;
}

MenuStore* submenuOf(MenuEntry& entry) {
  if (!entry.submenu) entry.submenu = std::make_unique<MenuStore>();
  return entry.submenu.get();
}

void MenuReader::openSubmenu(Place& place) {
  if (submenus_ >= DeepestMenu) {
    ++place.tooDeep;
    return;
  }
  ++submenus_;
  place.levels.push_back({submenuOf(*place.levels.back().entry), nullptr});
}

// The first menu of a file was opened by whoever named the file.
void MenuReader::closeMenu(Place& place) {
  place.levels.pop_back();
  if (!place.levels.empty()) --submenus_;
}

void MenuReader::takeLine(const std::string& line, Place& place) {
  const std::string text = trimmed(line);
  if (text.empty()) return;
  Level& level = place.levels.back();
  if (place.tooDeep > 0) {
    if (text == "{") ++place.tooDeep;
    if (text == "}") --place.tooDeep;
  } else if (text == "}") {
    closeMenu(place);
  } else if (text == "{" && takesSubmenu(level.entry)) {
    openSubmenu(place);
  } else if (beginsWithWord(line.c_str(), IncludeWord)) {
    include(trimmed(line.substr(sizeof IncludeWord - 1)), place.directory, *level.menu);
    level.entry = nullptr;
  } else if (beginsWithBlank(line)) {
    if (level.entry) level.entry->commands.add(new Westring(decodeFileName(text.c_str())));
  } else if (const size_t colon = line.find(':'); colon != std::string::npos && colon > 0) {
    MenuEntry* entry = addEntry(*level.menu, line, colon);
    // The commands below an entry that isn't one don't belong to the one before.
    if (entry || !isComment(line)) level.entry = entry;
  }
}

void MenuReader::include(const std::string& utf8Name, const Westring& directory, MenuStore& menu) {
  const Westring name = decodeFileName(utf8Name.c_str());
  if (open_.size() > DeepestMenu || ++includes_ > MostIncludes) return tell(CannotOpen, name);
  for (const Westring& path : pathMeanings(name, directory)) {
    Descriptor file;
    if (openRegularFile(path, file, Links::Follow) != 0) continue;
    struct stat info;
    if (System::fstat(file.get(), &info) != 0) continue;
    if (std::find(open_.begin(), open_.end(), idOf(info)) != open_.end()) {
      return tell(IncludesItself, name);
    }
    if (readOpen(file, path, menu)) return;
    break;
  }
  tell(CannotOpen, name);
}

void MenuReader::tell(const char* text, const Westring& file) {
  if (tells_) tells_ = tell_(text, file);
}

// ---- keys

// The number behind the letters of a function key, 1 to 12, or 0.
int functionNumber(const wchar_t* digits) {
  if (*digits < L'1' || *digits > L'9') return 0;
  wchar_t* end = nullptr;
  const long number = wcstol(digits, &end, 10);
  return *end == 0 && number <= 12 ? static_cast<int>(number) : 0;
}

Key::Code functionCode(int number, int modifier) {
  constexpr int LastOfRow = 10;
  if (number == 0) return Key::NoKey;
  if (number <= LastOfRow) return functionKey(number, modifier);
  const bool eleventh = number == LastOfRow + 1;
  switch (modifier) {
    case ShiftState::Ctrl:
      return eleventh ? Key::CtrlF11 : Key::CtrlF12;
    case ShiftState::Shift:
      return eleventh ? Key::ShiftF11 : Key::ShiftF12;
    case ShiftState::Alt:
      return eleventh ? Key::AltF11 : Key::AltF12;
    default:
      return eleventh ? Key::F11 : Key::F12;
  }
}

}  // namespace

Key::Code menuKeyCode(const Westring& text) {
  if (text.length() == 1) return text[0];
  if (text[0] == L'F') return functionCode(functionNumber(text.data() + 1), 0);
  if (text.empty() || text[1] != L'F') return Key::NoKey;
  const int number = functionNumber(text.data() + 2);
  switch (text[0]) {
    case L'C':
      return functionCode(number, ShiftState::Ctrl);
    case L'S':
      return functionCode(number, ShiftState::Shift);
    case L'A':
      return functionCode(number, ShiftState::Alt);
    default:
      return Key::NoKey;
  }
}

void readMenu(const Descriptor& file, const Westring& path, MenuStore& menu,
              const MenuTeller& tell) {
  MenuReader(tell).readOpen(file, path, menu);
}
