// What macros see of the two panels.

#include "shell/macro_panels.h"

#include <unistd.h>

#include <cstdlib>

#include "filecommands/archive_actions.h"
#include "language/shell_quote.h"
#include "panels/commands/selection.h"
#include "panels/reader/directory_reader.h"
#include "shell/shell_test.h"

namespace {

class MacroPanels : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    setenv("TMP", temporary_.path().c_str(), 1);
    for (const char* name : {"a b", "c", "d"}) leftDir.write(name, "x");
    rightDir.write("far.c", "x");
    openPanels();
    selectName(left(), L"c");
    selectName(right(), L"far.c");
  }
  void TearDown() override {
    unsetenv("TMP");
    ShellTest::TearDown();
  }

  // "-" when the command must not run.
  std::string expand(const wchar_t* command, int side = 0) {
    PanelMacros macros(side);
    Westring result = command;
    const auto end = expandCommand(result, Westring(), macros, MacroMode::Command);
    return end == MacroResult::Failed ? "-" : bytes(result);
  }
  void tag(const wchar_t* name) {
    selectName(left(), name);
    toggleTag(left(), left().currentIndex(), TagMode::Tag);
  }

  TempDir temporary_;
};

TEST_F(MacroPanels, EachSideSeesItselfAndTheOther) {
  EXPECT_EQ(expand(L"!p !P"), leftDir.path() + " " + rightDir.path());
  EXPECT_EQ(expand(L"!p !P", 1), rightDir.path() + " " + leftDir.path());
  EXPECT_EQ(expand(L"! !f !F"), "c " + leftDir.path("c") + " " + rightDir.path("far.c"));
  EXPECT_EQ(expand(L"!x !F", 1), "far " + leftDir.path("c"));
}

TEST_F(MacroPanels, AListTakesTheTagsAndLeavesTheCountersToTheNextRead) {
  tag(L"a b");
  tag(L"d");
  const int64_t bytesTagged = left().taggedSize;
  EXPECT_EQ(expand(L"!L", 1), " " + leftDir.path() + "/a\\ b " + leftDir.path("d"));
  EXPECT_EQ(left().taggedCount, 2);
  EXPECT_EQ(left().taggedSize, bytesTagged);
  left().needsRead = true;
  panelRefresh();
  EXPECT_EQ(left().taggedCount, 0);
  restoreSelection(left());
  EXPECT_EQ(left().taggedCount, 2) << "they are known to have been tagged";
}

TEST_F(MacroPanels, AListFileOfTheTagsLiesAmongTheTemporaryNames) {
  tag(L"a b");
  tag(L"d");
  const std::string command = expand(L"tar -T !@");
  const std::vector<std::string> names = temporary_.names();
  ASSERT_EQ(names.size(), 1u);
  EXPECT_EQ(names[0], "TD#" + std::to_string(getpid() & 0xFFFF) + ".0");
  EXPECT_EQ(temporary_.read(names[0]), "a\\ b\r\nd\r\n");
  EXPECT_EQ(left().taggedCount, 2);
  Westring path = unquoteShellWord(fromUtf8(command.c_str() + std::string("tar -T ").size()));
  EXPECT_EQ(bytes(path), temporary_.path(names[0]));
}

TEST_F(MacroPanels, WithoutAPlaceForTheListTheCommandDoesNotRun) {
  setenv("TMP", temporary_.path("gone").c_str(), 1);
  EXPECT_EQ(expand(L"tar -T !@"), "-");
}

TEST_F(MacroPanels, AQuestionIsADialogOnTheScreen) {
  queueText("some words");
  queueKey(Key::Enter);
  EXPECT_EQ(expand(L"grep !i\"Which words?\" !"), "grep some words c");
  queueKey(Key::Esc);
  EXPECT_EQ(expand(L"grep !i !"), "-");
}

TEST_F(MacroPanels, AMemberOfAnArchiveNeedsItsReaderToBeExtracted) {
  enterArchive();
  EXPECT_EQ(expand(L"less !"), "-");
  EXPECT_EQ(expand(L"echo !x"), "echo inner");
  struct Extractor : ArchiveActions {
    ~Extractor() override { archiveActions().disconnect(); }
    Westring extract(Panel&, const Westring& name) override {
      asked.push_back("extract " + bytes(name));
      return extracted;
    }
    std::vector<std::string> asked;
    Westring extracted = L"/tmp/a copy";
  } log;
  archiveActions().connect(log);
  EXPECT_EQ(expand(L"less !"), "less /tmp/a\\ copy");
  EXPECT_EQ(expand(L"less !F", 1), "less /tmp/a\\ copy");
  const std::string asked = "extract inner.txt";
  EXPECT_EQ(log.asked, (std::vector<std::string>{asked, asked}));
  log.extracted = L"";
  EXPECT_EQ(expand(L"less !f"), "-");
}

}  // namespace
