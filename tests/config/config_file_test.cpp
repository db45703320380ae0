// The configuration file on the disk: reading it, writing it anew, and what goes wrong.

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <thread>

#include "config/archiver_keys.h"
#include "config/config_reader.h"
#include "config/config_table.h"
#include "config/config_writer.h"
#include "console/key_codes.h"
#include "foundation/bounded_lines.h"
#include "foundation/data_paths.h"
#include "foundation/utf8.h"
#include "language/association_set.h"
#include "language/environment.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "support/as_user.h"
#include "support/console_test.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

using Names = std::vector<std::string>;

class ConfigFileTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    setenv("HOME", home.path().c_str(), 1);
    setProgramPath(L"/usr/bin/td");
    setConfigurationFile(L"");
    GlobalOptions::setDefaultOptions();
    defaultColours();
  }

  void writeIni(const std::string& text) {
    home.makeDir(".tdx");
    home.write(".tdx/td.ini", text);
  }
  std::string ini() const { return home.read(".tdx/td.ini"); }
  Names names() const { return namesIn(".tdx"); }
  Names namesIn(const std::string& directory) const {
    Names result;
    for (const auto& item : std::filesystem::directory_iterator(home.path(directory))) {
      result.push_back(item.path().filename().string());
    }
    std::sort(result.begin(), result.end());
    return result;
  }

  // The screen with the first box that `act` shows, "" without one; Enter closes them all. Their
  // count is in `boxes`.
  template <class Act>
  std::string boxOf(Act act) {
    constexpr int presses = 4;
    std::string seen;
    std::atomic<bool> ended = false;
    std::thread user([&] {
      const auto shown = [&] { return screenText().find("OK") != std::string::npos; };
      if (!waitUntil([&] { return ended || shown(); })) return;
      if (!ended) seen = screenText();
      for (int i = 0; i < presses; ++i) queueKey(Key::Enter);
    });
    act();
    ended = true;
    user.join();
    boxes = presses - console->eventCount();
    drainEvents();
    return seen;
  }
  static void load() { loadConfiguration(ConfigScope::Everything); }

  TempDir home;
  int boxes = 0;
};

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string text(const Westring& wide) {
  return toUtf8(wide).data();
}

// ---- reading

TEST_F(ConfigFileTest, WithoutAFileTheDefaultsHoldAndNothingIsTold) {
  GlobalOptions::Hidden = true;
  colourTable[0] = 1;
  EXPECT_EQ(boxOf(load), "");
  EXPECT_FALSE(GlobalOptions::Hidden);
  EXPECT_EQ(colourTable[0], 0x1B);
  EXPECT_FALSE(home.exists(".tdx")) << "reading makes no directory";
}

TEST_F(ConfigFileTest, AnEmptyFileGivesTheDefaults) {
  const std::string defaults = configurationText();
  writeIni(
      "Hidden=on\r\nLeft=/tmp\r\nd3=/x\r\nColours=1 2\r\n*.c: "
      "vi\r\n[Archiver:ZIP]\r\nDelete=rm\r\n");
  load();
  EXPECT_NE(configurationText(), defaults);
  writeIni("");
  EXPECT_EQ(boxOf(load), "");
  EXPECT_EQ(configurationText(), defaults);
}

TEST_F(ConfigFileTest, AFileThatCannotBeReadIsToldAndTheDefaultsHold) {
  home.makeDir(".tdx");
  home.makeDir(".tdx/td.ini");
  GlobalOptions::Hidden = true;
  const std::string box = boxOf(load);
  EXPECT_TRUE(holds(box, "Is a directory")) << box;
  EXPECT_TRUE(holds(box, "td.ini")) << box;
  EXPECT_EQ(boxes, 1);
  EXPECT_FALSE(GlobalOptions::Hidden);
}

TEST_F(ConfigFileTest, APipeOfThatNameIsNotWaitedFor) {
  home.makeDir(".tdx");
  ASSERT_EQ(mkfifo(home.path(".tdx/td.ini").c_str(), 0600), 0);
  EXPECT_TRUE(holds(boxOf(load), "Invalid argument"));
}

TEST_F(ConfigFileTest, EachBadDirectiveHasItsBox) {
  writeIni("Clock=on\nFoo=1\nBar=2\nHidden=on\n");
  const std::string box = boxOf(load);
  EXPECT_TRUE(holds(box, "Bad directive (Foo) in td.ini, line 2")) << box;
  EXPECT_EQ(boxes, 2);
  EXPECT_TRUE(GlobalOptions::Clock);
  EXPECT_TRUE(GlobalOptions::Hidden);
}

TEST_F(ConfigFileTest, EscAtABoxIsEnoughForTheRest) {
  std::string lines;
  for (int i = 0; i < 1000; ++i) lines += "Foo=1\n";
  writeIni(lines + "Hidden=on\n");
  queueKey(Key::Esc);
  load();
  EXPECT_TRUE(GlobalOptions::Hidden);
}

TEST_F(ConfigFileTest, OfALongLineTheFirst4096BytesCount) {
  for (const int length : {4095, 4096, 4097, 9000}) {
    const std::string key = "Left=/";
    const std::string line = key + std::string(static_cast<size_t>(length) - key.size(), 'x');
    for (const std::string end : {"\n", "\r\n"}) {
      writeIni(line + end + "Hidden=on" + end);
      EXPECT_EQ(boxOf(load), "") << length;
      const int kept = std::min(length, 4096) - 5;
      EXPECT_EQ(GlobalOptions::Left.length(), kept) << length;
      EXPECT_TRUE(GlobalOptions::Hidden) << length;
    }
  }
}

TEST_F(ConfigFileTest, TheRestOfALongLineIsNoLineOfItsOwn) {
  writeIni("Left=" + std::string(4091, 'x') + "Hidden=on\nClock=on\n");
  load();
  EXPECT_FALSE(GlobalOptions::Hidden);
  EXPECT_TRUE(GlobalOptions::Clock);
}

TEST_F(ConfigFileTest, NumbersOutsideTheirRangeAreCorrected) {
  writeIni("Lines=300\nColumns=60\nFontSize=100\nMaxHist=0\nTabWidth=9\nMouSpeed=0\n");
  load();
  using namespace GlobalOptions;
  EXPECT_EQ(Lines, 25);
  EXPECT_EQ(Columns, 80);
  EXPECT_EQ(FontSize, 12);
  EXPECT_EQ(MaxHist, 500);
  EXPECT_EQ(TabWidth, 8);
  EXPECT_EQ(MouSpeed, 8);
}

TEST_F(ConfigFileTest, ReadingTheListsAgainForgetsTheOldOnes) {
  setenv("TDOUTER", "outer", 1);
  writeIni(
      "*.c: "
      "vi\n[Environment]\nTDONE=1\nTDOUTER=inner\nTDPATH=$TDPATH:/x\n[Archiver:RAR]\nDelete=rm\n");
  load();
  EXPECT_STREQ(configuredEnvironment().get("TDPATH"), ":/x");
  EXPECT_STREQ(configuredEnvironment().get("TDOUTER"), "inner");
  writeIni("*.d: ed\n*.e: ed\n[Environment]\nTDPATH=$TDPATH:/y\n[General Options]\nHidden=on\n");
  loadConfiguration(ConfigScope::ListsOnly);
  EXPECT_EQ(associationSets().associations.count(), 2);
  EXPECT_EQ(configuredEnvironment().get("TDONE"), nullptr);
  EXPECT_STREQ(configuredEnvironment().get("TDOUTER"), "outer") << "what was inherited is back";
  EXPECT_STREQ(configuredEnvironment().get("TDPATH"), ":/y");
  EXPECT_EQ(text(archiverKeys().text(Archiver::Rar, ArchiverKey::Delete)), "rar d -std -r");
  EXPECT_FALSE(GlobalOptions::Hidden);
}

TEST_F(ConfigFileTest, ListsOfAFileThatCannotBeReadStay) {
  writeIni("*.c: vi\n");
  load();
  const FaultHook fault("read", EIO);
  EXPECT_TRUE(
      holds(boxOf([] { loadConfiguration(ConfigScope::ListsOnly); }), "Input/output error"));
  EXPECT_EQ(associationSets().associations.count(), 1);
}

// ---- writing

TEST_F(ConfigFileTest, TheFirstFileHoldsEverythingInItsOrder) {
  EXPECT_EQ(boxOf(saveConfiguration), "");
  std::string lines = ini();
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i] == '\n') {
      EXPECT_EQ(lines[i - 1], '\r');
    }
  }
  std::erase(lines, '\r');
  expectGoldenText("defaults", lines);
  EXPECT_EQ(home.mode(".tdx"), 0700u);
  EXPECT_EQ(home.mode(".tdx/td.ini"), 0600u);
  EXPECT_EQ(names(), Names{"td.ini"});
}

TEST_F(ConfigFileTest, EveryOptionComesBack) {
  using namespace GlobalOptions;
  // A value that isn't the default, by kind.
  for (const ConfigKeyword& row : configKeywordTable) {
    const std::string old = optionText(row).data();
    switch (row.kind) {
      case OptionKind::Switch:
        setOption(row, old == "on" ? "off" : "on");
        break;
      case OptionKind::Number:
        setOption(row, row.key == std::string("Lines") ? "25" : "7");
        break;
      case OptionKind::TimeMode:
        setOption(row, "24");
        break;
      case OptionKind::SortWord:
        setOption(row, "rtime");
        break;
      case OptionKind::Character:
        setOption(row, "R");
        break;
      case OptionKind::Colours:
        setOption(row, "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18");
        break;
      case OptionKind::Text:
      case OptionKind::WideText:
        setOption(row, "a b=c:d \xc3\xa9");
        break;
      default:
        break;
    }
  }
  correctNumbers();
  for (int i = 0; i < ShortcutCount; ++i)
    directoryShortcuts[i] = L"/dir = " + Westring(L'0' + i, 1);
  panelPair().side[0].style = PanelStyle::Unix;
  panelPair().side[1].type = PanelType::Info;
  panelPair().side[0].filter = L"*.c";
  panelPair().side[1].showing = false;
  saveConfiguration();
  const std::string saved = configurationText();
  load();
  EXPECT_EQ(configurationText(), saved);
  EXPECT_EQ(LeftStyle, 4);
  EXPECT_EQ(RightType, 1);
  EXPECT_EQ(text(LeftFilter), "*.c");
  EXPECT_FALSE(RightShowing);
  EXPECT_EQ(text(directoryShortcuts[9]), "/dir = 9");
}

TEST_F(ConfigFileTest, WhatWasWrittenByHandSurvives) {
  writeIni(
      "Hidden=on\n*.old: form !\n"
      "[Directory Colours]\n.git: red\n[Colours]\n*.c: green\n[Editor Associations]\n*.x: ed\n"
      "[Viewer Associations]\n*.png: see\n[Associations]\n*.c | *.h: vi ! && x:y\n*.c: second\n"
      "[Environment]\nZED=/opt\nPATH=$PATH:$ZED/bin\nPATH=$PATH:~/bin\nHERE=~/x\nEMPTY=\n"
      "[Archiver:ZIP]\nextract=unzip -q\n[General Options]\nClock=on\nd7=/seven\n");
  load();
  saveConfiguration();
  const std::string first = ini();
  for (const char* part :
       {"[Associations]\r\n*.old: form !\r\n*.c | *.h: vi ! && x:y\r\n*.c: second\r\n\r\n",
        "[Viewer Associations]\r\n*.png: see\r\n\r\n", "[Editor Associations]\r\n*.x: ed\r\n\r\n",
        "[Colours]\r\n*.c: green\r\n\r\n", "[Directory Colours]\r\n.git: red\r\n\r\n",
        "[Environment]\r\nZED=/opt\r\nPATH=$PATH:$ZED/bin\r\nPATH=$PATH:~/bin\r\nHERE=~/x\r\nEMPTY="
        "\r\n\r\n",
        "Extract=unzip -q\r\n", "Hidden=on\r\n", "Clock=on\r\n", "\r\nd7=/seven\r\n"}) {
    EXPECT_TRUE(holds(first, part)) << part << "\n in\n" << first;
  }
  EXPECT_EQ(names(), Names{"td.ini"}) << "nothing was lost, so nothing is kept beside it";
  load();
  saveConfiguration();
  EXPECT_EQ(ini(), first);
}

TEST_F(ConfigFileTest, ListsChangedInTheFileMeanwhileAreKept) {
  writeIni("*.c: vi\n");
  load();
  writeIni("*.d: ed\n[Environment]\nTDNEW=$HOME\nHidden=on\n");
  GlobalOptions::Clock = true;
  saveConfiguration();
  EXPECT_TRUE(holds(ini(), "[Associations]\r\n*.d: ed\r\n\r\n"));
  EXPECT_TRUE(holds(ini(), "TDNEW=$HOME\r\n"));
  EXPECT_TRUE(holds(ini(), "Clock=on\r\n"));
}

TEST_F(ConfigFileTest, WithoutAFileTheListsInMemoryAreWritten) {
  writeIni("*.c: vi\n[Archiver:HA]\nDelete=gone\n");
  load();
  ASSERT_EQ(unlink(home.path(".tdx/td.ini").c_str()), 0);
  saveConfiguration();
  EXPECT_TRUE(holds(ini(), "*.c: vi\r\n"));
  EXPECT_TRUE(holds(ini(), "Delete=gone\r\n"));
}

TEST_F(ConfigFileTest, TenThousandAssociationsComeBackInOrder) {
  std::string lines;
  for (int i = 0; i < 10000; ++i) {
    lines += "*." + std::to_string(i) + ": run " + std::to_string(i) + " !\r\n";
  }
  writeIni("[Associations]\r\n" + lines);
  load();
  EXPECT_EQ(associationSets().associations.count(), 10000);
  saveConfiguration();
  EXPECT_TRUE(ini().starts_with("[Associations]\r\n" + lines + "\r\n"));
}

TEST_F(ConfigFileTest, WhatTheReaderCouldNotTakeIsKeptBesideOnceInARun) {
  const std::string old = "; a comment\nClock=on\n[Unknown]\n";
  writeIni(old);
  home.write(".tdx/td.ini~", "an older one");
  home.chmod(".tdx/td.ini~", 0644);
  load();
  saveConfiguration();
  EXPECT_EQ(home.read(".tdx/td.ini~"), old);
  EXPECT_EQ(home.mode(".tdx/td.ini~"), 0600u);
  EXPECT_TRUE(holds(ini(), "Clock=on\r\n"));
  EXPECT_FALSE(holds(ini(), "comment"));
  writeIni("; another\n");
  saveConfiguration();
  EXPECT_EQ(home.read(".tdx/td.ini~"), old);
}

TEST_F(ConfigFileTest, TheOneKeptBeforeStaysUntilTheNewOneIsWhole) {
  writeIni("; a comment\n");
  home.write(".tdx/td.ini~", "an older one");
  const FaultHook fault("write", ENOSPC);
  EXPECT_TRUE(holds(boxOf(saveConfiguration), "No space left"));
  EXPECT_EQ(home.read(".tdx/td.ini~"), "an older one");
  EXPECT_EQ(ini(), "; a comment\n");
}

TEST_F(ConfigFileTest, AByteOrderMarkIsNoPartOfTheFirstLine) {
  writeIni(
      "\xEF\xBB\xBF"
      "Clock=on\n");
  EXPECT_EQ(boxOf(load), "");
  EXPECT_TRUE(GlobalOptions::Clock);
  saveConfiguration();
  EXPECT_EQ(names(), Names{"td.ini"}) << "nothing of the old file was lost";
}

TEST_F(ConfigFileTest, ACutLineIsKeptBesideToo) {
  const std::string old = "Left=/" + std::string(5000, 'x') + "\n";
  writeIni(old);
  load();
  saveConfiguration();
  EXPECT_EQ(home.read(".tdx/td.ini~"), old);
}

TEST_F(ConfigFileTest, NothingIsWrittenWhereTheOldFileCannotBeKept) {
  const std::string old = "; a comment\n";
  writeIni(old);
  home.makeDir(".tdx/td.ini~");
  const std::string box = boxOf(saveConfiguration);
  EXPECT_TRUE(holds(box, "Is a directory")) << box;
  EXPECT_TRUE(holds(box, "td.ini~")) << box;
  EXPECT_EQ(boxes, 1);
  EXPECT_EQ(ini(), old);
}

TEST_F(ConfigFileTest, AnOldFileThatCannotBeReadIsNotReplaced) {
  const std::string old = "Clock=on\n";
  writeIni(old);
  {
    const FaultHook fault("open", EACCES);
    const std::string box = boxOf(saveConfiguration);
    EXPECT_TRUE(holds(box, "Permission denied")) << box;
    EXPECT_TRUE(holds(box, "td.ini")) << box;
  }
  EXPECT_EQ(ini(), old);
  EXPECT_EQ(names(), Names{"td.ini"});
}

TEST_F(ConfigFileTest, ALinkStaysAndItsTargetIsWrittenWithItsMode) {
  home.makeDir("dotfiles");
  home.write("dotfiles/deck", "Clock=on\n");
  home.chmod("dotfiles/deck", 0640);
  home.makeDir(".tdx");
  home.link("../dotfiles/deck", ".tdx/td.ini");
  load();
  EXPECT_TRUE(GlobalOptions::Clock);
  saveConfiguration();
  EXPECT_EQ(std::filesystem::read_symlink(home.path(".tdx/td.ini")), "../dotfiles/deck");
  EXPECT_TRUE(holds(home.read("dotfiles/deck"), "Clock=on\r\n"));
  EXPECT_EQ(home.mode("dotfiles/deck"), 0640u);
  EXPECT_EQ(namesIn("dotfiles"), Names{"deck"});
}

TEST_F(ConfigFileTest, ADirectoryOfTheUsersIsNotMadePrivateAnew) {
  home.makeDir(".tdx");
  home.chmod(".tdx", 0755);
  saveConfiguration();
  EXPECT_EQ(home.mode(".tdx"), 0755u);
}

TEST_F(ConfigFileTest, NamesOfOneAndTwoCharactersWork) {
  for (const char* name : {"c", "ab", ".c"}) {
    setConfigurationFile(home.wide(name));
    GlobalOptions::Clock = true;
    saveConfiguration();
    GlobalOptions::Clock = false;
    load();
    EXPECT_TRUE(GlobalOptions::Clock) << name;
  }
}

TEST_F(ConfigFileTest, TheConfiguredLinesFollowTheScreen) {
  panelPair().screenLines = 50;
  GlobalOptions::Lines = 0;
  saveConfiguration();
  EXPECT_TRUE(holds(ini(), "Lines=0\r\n"));
  GlobalOptions::Lines = 30;
  GlobalOptions::Columns = 100;
  saveConfiguration();
  EXPECT_TRUE(holds(ini(), "Lines=50\r\n"));
  EXPECT_TRUE(holds(ini(), "Columns=100\r\n"));
}

TEST_F(ConfigFileTest, ADirectoryWhoseNameHasALineEndBecomesNoLine) {
  GlobalOptions::directoryShortcuts[1] = L"/tmp/a\nHidden=on";
  GlobalOptions::directoryShortcuts[2] = L"/tmp/blank ";
  saveConfiguration();
  load();
  EXPECT_FALSE(GlobalOptions::Hidden);
  EXPECT_EQ(text(GlobalOptions::directoryShortcuts[1]), "");
  EXPECT_EQ(text(GlobalOptions::directoryShortcuts[2]), "/tmp/blank /");
}

TEST_F(ConfigFileTest, WhatAnotherProgramSavedMeanwhileIsReadAgain) {
  writeIni("*.c: first\n");
  struct Other {
    const TempDir& home;
    int opens = 0;
    static int onCall(const char* call, const char* path, void* context) {
      auto* other = static_cast<Other*>(context);
      if (std::string(call) != "openAt" || !holds(path, ".td-") || other->opens++ > 0) return 0;
      other->home.write(".tdx/td.ini", "*.c: second, by another program\n");
      return 0;
    }
  } other{home};
  System::setHook(Other::onCall, &other);
  saveConfiguration();
  System::setHook(nullptr, nullptr);
  EXPECT_GE(other.opens, 2);
  EXPECT_TRUE(holds(ini(), "*.c: second, by another program\r\n")) << ini();
}

TEST_F(ConfigFileTest, ProgramsThatSaveAtOnceLeaveOneWholeFile) {
  constexpr int programs = 4, savesEach = 25;
  writeIni("*.c: vi\n");
  std::vector<pid_t> children;
  for (int program = 0; program < programs; ++program) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      int failed = 0;
      for (int i = 0; i < savesEach; ++i) {
        ConfigFile file;
        GlobalOptions::Saver = program * savesEach + i;
        const int error = writeConfiguration(file);
        if (error != 0 && error != EBUSY) ++failed;
      }
      _exit(failed);
    }
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  const std::string saved = ini();
  load();
  EXPECT_EQ(configurationText(), saved);
  EXPECT_EQ(associationSets().associations.count(), 1);
  EXPECT_EQ(names(), Names{"td.ini"});
}

// ---- what goes wrong

TEST_F(ConfigFileTest, ADirectoryThatCannotBeWrittenIsTold) {
  writeIni("Clock=on\n");
  const FaultHook fault("openAt", EACCES);
  const std::string box = boxOf(saveConfiguration);
  EXPECT_TRUE(holds(box, "Permission denied")) << box;
  EXPECT_EQ(boxes, 1);
  EXPECT_EQ(ini(), "Clock=on\n");
}

TEST_F(ConfigFileTest, WhicheverCallFailsOneOfTheFilesIsWhole) {
  enum Result { NoCallLeft, Told, Written };
  const std::string old = "; a comment\nClock=on\n";
  writeIni(old);
  load();
  GlobalOptions::Hidden = true;
  int calls = 0;
  for (int number = 1;; ++number) {
    writeIni(old);
    unlink(home.path(".tdx/td.ini~").c_str());
    std::string hit;
    const int status = runInChild([&] {
      FaultHook fault(number, ENOSPC);
      ConfigFile file;
      const int error = writeConfiguration(file);
      if (!fault.hit()) return NoCallLeft;
      return error ? Told : Written;
    });
    if (status == NoCallLeft) break;
    calls = number;
    const std::string now = ini();
    const std::string written = configurationText();
    // A failure that nobody is told of has cost nothing.
    EXPECT_TRUE(now == written || (now == old && status == Told)) << number << "\n" << now;
    for (const std::string& name : names()) EXPECT_TRUE(name.starts_with("td.ini")) << name;
  }
  EXPECT_GT(calls, 15);
}

TEST_F(ConfigFileTest, AKillAtAnyCallLeavesOneOfTheFilesWhole) {
  const std::string old = "; a comment\nClock=on\n";
  int calls = 0;
  writeIni(old);
  load();
  GlobalOptions::Hidden = true;
  for (int number = 1;; ++number) {
    writeIni(old);
    unlink(home.path(".tdx/td.ini~").c_str());
    Fault fault{.number = number, .reach = Fault::Reach::Kill};
    const int status = runInChild([&] {
      System::setPlaceHook(Fault::onCall, &fault);
      saveConfiguration();
    });
    if (status == 0) break;
    ASSERT_EQ(status, Fault::Killed);
    calls = number;
    const std::string now = ini();
    EXPECT_TRUE(now == old || now == configurationText()) << number << "\n" << now;
    const std::string kept = home.read(".tdx/td.ini~");
    EXPECT_TRUE(kept.empty() || kept == old) << number;
    EXPECT_TRUE(now == old || kept == old) << "the old one was lost at call " << number;
  }
  EXPECT_GT(calls, 15);
}

}  // namespace
