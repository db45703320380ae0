// The description that programs read of the terminal, against what it does.
#include <cstdio>
#include <filesystem>

#include "emulator_test.h"
#include "terminal/terminal_keys.h"

namespace {

// What the description holds under a name; with numbers put in.
std::string capability(const std::string& name) {
  const std::string data =
      std::filesystem::absolute(__FILE__).parent_path() / "../../data/terminfo";
  const std::string command =
      "env -u TERMINFO HOME=/nonexistent TERMINFO_DIRS=" + data + " tput -T ansi " + name;
  FILE* output = popen(command.c_str(), "r");
  if (!output) return "";
  char buffer[256];
  const size_t count = fread(buffer, 1, sizeof buffer, output);
  pclose(output);
  return {buffer, count};
}

using TerminalDescription = EmulatorTest;

}  // namespace

TEST_F(TerminalDescription, TellsWhatKeysSend) {
  const std::pair<const char*, Key::Code> rows[] = {
      {"kcuu1", Key::Up},       {"kcud1", Key::Down},      {"kcub1", Key::Left},
      {"kcuf1", Key::Right},    {"khome", Key::Home},      {"kend", Key::End},
      {"kpp", Key::PageUp},     {"knp", Key::PageDown},    {"kich1", Key::Insert},
      {"kdch1", Key::Delete},   {"kbs", Key::Backspace},   {"kcbt", Key::ShiftTab},
      {"kf1", Key::F1},         {"kf2", Key::F2},          {"kf3", Key::F3},
      {"kf4", Key::F4},         {"kf5", Key::F5},          {"kf6", Key::F6},
      {"kf7", Key::F7},         {"kf8", Key::F8},          {"kf9", Key::F9},
      {"kf10", Key::F10},       {"kf11", Key::F11},        {"kf12", Key::F12},
      {"kLFT5", Key::CtrlLeft}, {"kRIT5", Key::CtrlRight},
  };
  for (const auto& [name, key] : rows) EXPECT_EQ(capability(name), keyBytes(key)) << name;
}

TEST_F(TerminalDescription, ItsSequencesAreUnderstood) {
  for (const char* name : {"bel",    "cr",    "cub1",    "ht",      "ind",
                           "cub 3",  "cud 3", "cuf 3",   "cuu 3",   "cud1",
                           "cuf1",   "cuu1",  "home",    "cup 3 4", "hpa 5",
                           "vpa 5",  "cbt",   "clear",   "ed",      "el",
                           "el1",    "dch 2", "dch1",    "dl 2",    "dl1",
                           "ech 2",  "ich 2", "ich1",    "il 2",    "il1",
                           "indn 2", "rin 2", "bold",    "rev",     "smul",
                           "rmul",   "smso",  "rmso",    "sgr0",    "smacs",
                           "rmacs",  "op",    "setaf 1", "setab 4", "sgr 1 1 1 0 0 1 0 0 1"}) {
    const std::string sequence = capability(name);
    EXPECT_NE(sequence, "") << name;
    console->fillBlank(0, 0, 80, 25, 7);
    feedAt(20, 10, sequence);
    EXPECT_EQ(screenText().find_first_not_of("\n"), std::string::npos) << name << " shows as text";
  }
  EXPECT_EQ(logText(), "");
}

TEST_F(TerminalDescription, CursorAddressesAndRepetitionsMeanTheSame) {
  feed(capability("cup 3 4"));
  EXPECT_EQ(cursor(), "4,3");
  feed(capability("hpa 7") + capability("vpa 9"));
  EXPECT_EQ(cursor(), "7,9");
  feed(capability("rep 120 5"));
  EXPECT_EQ(rowText(6, 9, 7), " xxxxx ");
  feed(capability("sgr 1 0 1") + "y");
  EXPECT_EQ(attrAt(12, 9), 0x70) << "standing out and reversed is reversed once";
}
