#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "archive/sample_archives.h"
#include "e2e/program_test.h"
#include "foundation/system.h"

namespace {

// What the tools themselves make of archives.
class ArchiveWorkTest : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    setenv("TMP", temporary_.path().c_str(), 1);
  }
  // A command of the shell in the left directory, that must work.
  void shell(const std::string& command) {
    const std::string whole = "cd " + left().path() + " && " + command + " >/dev/null 2>&1";
    ASSERT_EQ(system(whole.c_str()), 0) << command;
  }
  // What it prints.
  std::string output(const std::string& command) {
    const std::string file = scratch_.path("output");
    const std::string whole = "cd " + left().path() + " && (" + command + ") >" + file + " 2>&1";
    EXPECT_EQ(system(whole.c_str()), 0) << command;
    return scratch_.read("output");
  }
  void enter(const std::string& name, const std::string& shown) {
    moveTo(name);
    press(XK_Return);
    expectCursorOn("..");  // what is shown may stand in the other panel too
    expectText(shown);
  }
  // F4, a word in front of the text, saved and left.
  void editInFront(const std::string& name, const std::string& word) {
    moveTo(name);
    press(XK_F4);
    expectText("old text");
    type(word);
    press(XK_F2);
    press(XK_Escape);
    expectCursorOn(name);
  }
  // Ctrl-PgUp, from the first level of an archive.
  void leaveArchive(const std::string& name) {
    press(XK_Page_Up, {XK_Control_L});
    expectCursorOn(name);
  }
  void expectNoTemporaries() { EXPECT_EQ(temporary_.names(), std::vector<std::string>{}); }
  const TempDir& temporary() const { return temporary_; }

 private:
  TempDir temporary_, scratch_;
};

TEST_F(ArchiveWorkTest, AMemberIsViewedAndNothingIsLeftBehind) {
  left().write("member.txt", "old text");
  shell("zip -q pack.zip member.txt && rm member.txt");
  const std::string before = left().read("pack.zip");
  start();
  enter("pack.zip", "member.txt");
  moveTo("member.txt");
  press(XK_F3);
  expectText("old text");
  press(XK_Escape);
  expectCursorOn("member.txt");
  leaveArchive("pack.zip");
  expectNoTemporaries();
  EXPECT_EQ(left().read("pack.zip"), before);
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, AnEditedMemberGoesBackWhenTheArchiveIsLeft) {
  left().write("member.txt", "old text");
  shell("zip -q pack.zip member.txt && rm member.txt");
  start();
  enter("pack.zip", "member.txt");
  editInFront("member.txt", "new ");
  EXPECT_EQ(output("unzip -p pack.zip member.txt"), "old text");
  leaveArchive("pack.zip");
  EXPECT_EQ(output("unzip -p pack.zip member.txt"), "new old text");
  expectNoTemporaries();
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, AnEditedMemberGoesBackAtTheEndOfTheProgram) {
  left().write("member.txt", "old text");
  shell("tar -cf pack.tar member.txt && rm member.txt");
  start();
  enter("pack.tar", "member.txt");
  editInFront("member.txt", "new ");
  EXPECT_EQ(quit(), 0);
  EXPECT_EQ(output("tar -xOf pack.tar member.txt | tail -c 12"), "new old text");
  expectNoTemporaries();
}

TEST_F(ArchiveWorkTest, AnArchiveInAnArchiveIsEnteredAndPutBack) {
  left().write("member.txt", "old text");
  shell(
      "zip -q inner.zip member.txt && tar -cf middle.tar inner.zip && zip -q outer.zip middle.tar"
      " && rm member.txt inner.zip middle.tar");
  start();
  enter("outer.zip", "middle.tar");
  enter("middle.tar", "inner.zip");
  enter("inner.zip", "member.txt");
  editInFront("member.txt", "new ");
  press(XK_Page_Up, {XK_Control_L});
  expectCursorOn("inner.zip");
  press(XK_Page_Up, {XK_Control_L});
  expectCursorOn("middle.tar");
  leaveArchive("outer.zip");
  EXPECT_EQ(output("unzip -q outer.zip && tar -xf middle.tar && unzip -p inner.zip member.txt"),
            "new old text");
  expectNoTemporaries();
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, F5BesideAnArchiveAddsToIt) {
  left().makeDir("docs");
  left().write("docs/a.txt", "first");
  left().write("docs/b.txt", "second");
  right().write("here", "x");
  shell("zip -q -j " + right().path("pack.zip") + " docs/a.txt");
  start();
  press(XK_Tab);
  enter("pack.zip", "a.txt");
  press(XK_Tab);
  moveTo("docs");
  press(XK_F5);
  expectText("Compress \"docs\" to");
  expectText(right().path("pack.zip"));
  press(XK_Return);
  expectSoon("docs in the archive", [this] {
    return output("unzip -Z1 " + right().path("pack.zip")).find("docs/b.txt") != std::string::npos;
  });
  EXPECT_EQ(output("unzip -p " + right().path("pack.zip") + " docs/b.txt"), "second");
  EXPECT_EQ(output("unzip -p " + right().path("pack.zip") + " a.txt"), "first");
  EXPECT_EQ(left().read("docs/a.txt"), "first");
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, F6BesideAnArchiveMovesWhatTheArchiveHolds) {
  left().makeDir("docs");
  left().write("docs/a.txt", "first");
  left().write("docs/b.txt", "second");
  left().write("old", "o");
  shell("tar -cf " + right().path("pack.tar") + " old");
  start();
  press(XK_Tab);
  enter("pack.tar", "old");
  press(XK_Tab);
  moveTo("docs");
  press(XK_F6);
  expectText("Compress and Move \"docs\" to");
  press(XK_Return);
  expectSoon("the directory gone", [this] { return !left().exists("docs"); });
  expectText("docs");  // in the archive
  EXPECT_EQ(output("tar -xOf " + right().path("pack.tar") + " docs/a.txt"), "first");
  EXPECT_EQ(output("tar -xOf " + right().path("pack.tar") + " docs/b.txt"), "second");
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, ShiftF7MakesANewArchiveOfTheTagged) {
  left().write("one", "1");
  left().write("two words", "2");
  start();
  moveTo("one");
  press(XK_Insert);
  expectCursorOn("two words");
  press(XK_Insert);
  expectText("2 selected files");
  press(XK_F7, {XK_Shift_L});
  expectText("Compress Files");
  press(XK_Return);
  expectSoon("the archive", [this] { return right().exists("two words.zip"); });
  expectNoText("Compress Files");
  expectText("two words.zip");
  EXPECT_EQ(output("unzip -p '" + right().path("two words.zip") + "'"), "12");
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, AssociationsAndMacrosWorkWithACopyOfTheMember) {
  home().makeDir(".tdx");
  home().write(".tdx/td.ini", "[Viewer Associations]\n*.see : cat ! > " + right().path("seen") +
                                  "\n[Associations]\n*.run : cat ! > " + right().path("ran") +
                                  "\n");
  left().write("a.see", "for the viewer");
  left().write("b.run", "for Enter");
  shell("zip -q pack.zip a.see b.run && rm a.see b.run");
  start();
  enter("pack.zip", "a.see");
  moveTo("a.see");
  press(XK_F3);
  expectSoon("the viewer's output", [this] { return right().read("seen") == "for the viewer"; });
  expectCursorOn("a.see");
  moveTo("b.run");
  press(XK_Return);
  expectSoon("the program's output", [this] { return right().read("ran") == "for Enter"; });
  expectCursorOn("b.run");
  leaveArchive("pack.zip");
  expectNoTemporaries();
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, MembersOfAnotherSystemAreEditedViewedAndTakenOut) {
  left().write("pack.zip", zipArchive({{"h\u00e4.txt", "old text"},
                                       {"gr\x81n.txt", "of the first page"},
                                       {"back\\slash.txt", "below"}}));
  start();
  enter("pack.zip", "h\u00e4.txt");
  editInFront("h\u00e4.txt", "new ");
  moveTo("gr\u00fcn.txt");
  press(XK_F3);
  expectText("of the first page");
  press(XK_Escape);
  expectCursorOn("gr\u00fcn.txt");
  EXPECT_EQ(output("unzip -p pack.zip 'h*.txt'"), "new old text") << "before another is taken";
  press(XK_F5);
  expectText("Extract \"gr\u00fcn.txt\" to");
  press(XK_Return);
  expectSoon("the file", [this] { return right().read("gr\u00fcn.txt") == "of the first page"; });
  expectAwaited();
  moveTo("back");
  press(XK_Return);
  expectText("slash.txt");
  moveTo("slash.txt");
  press(XK_F3);
  expectText("below");
  press(XK_Escape);
  expectCursorOn("slash.txt");
  EXPECT_EQ(quit(), 0);
  expectNoTemporaries();
}

TEST_F(ArchiveWorkTest, ThePasswordOfAMemberIsTypedIntoItsTerminal) {
  left().write("secret.txt", "old text");
  shell("zip -q -P open pack.zip secret.txt && rm secret.txt");
  start();
  enter("pack.zip", "secret.txt");
  moveTo("secret.txt");
  press(XK_F3);
  expectText("password:");
  typeMeanwhile("open");
  pressMeanwhile(XK_Return);
  expectText("old text");
  press(XK_Escape);
  expectCursorOn("secret.txt");
  expectNoText("password:");
  press(XK_F5);
  expectText("Extract \"secret.txt\" to");
  press(XK_Return);
  // The first prompt stands on the terminal's screen, too.
  expectSoon("the second prompt", [this] {
    const std::string shown = screen();
    return shown.find("password:") != shown.rfind("password:");
  });
  typeMeanwhile("open");
  pressMeanwhile(XK_Return);
  expectSoon("the file", [this] { return right().read("secret.txt") == "old text"; });
  expectAwaited();
  EXPECT_EQ(quit(), 0);
  expectNoTemporaries();
}

TEST_F(ArchiveWorkTest, EscEndsAToolThatDoesNotWantToEnd) {
  home().makeDir(".tdx");
  // It says that it heard the first signal, and goes on.
  left().write("deaf", "#!/bin/sh\ntrap 'echo heard >>" + left().path("signals") +
                           "' INT\nwhile :; do sleep 0.1; done\n");
  left().chmod("deaf", 0755);
  home().write(".tdx/td.ini", "[Archiver:ZIP]\nExtract=" + left().path("deaf") + "\n");
  left().write("member.txt", "old text");
  shell("zip -q pack.zip member.txt && rm member.txt");
  start();
  enter("pack.zip", "member.txt");
  moveTo("member.txt");
  press(XK_F3);
  expectText("Extracting");
  pressMeanwhile(XK_Escape);
  expectNoText("Extracting");
  expectCursorOn("member.txt");
  expectAwaited();
  EXPECT_EQ(left().read("signals"), "heard\n");
  EXPECT_EQ(quit(), 0);
  expectNoTemporaries();
}

TEST_F(ArchiveWorkTest, EscDuringTheUpdateKeepsTheEdit) {
  home().makeDir(".tdx");
  home().write(".tdx/td.ini", "[Archiver:ZIP]\nCompress=sleep 1000 #\n");
  left().write("member.txt", "old text");
  shell("zip -q pack.zip member.txt && rm member.txt");
  start();
  enter("pack.zip", "member.txt");
  editInFront("member.txt", "new ");
  press(XK_Page_Up, {XK_Control_L});
  expectText("Updating");
  pressMeanwhile(XK_Escape);
  expectText("An error occurred updating");
  press(XK_Return);
  expectCursorOn("pack.zip");
  EXPECT_EQ(output("unzip -p pack.zip member.txt"), "old text");
  ASSERT_EQ(temporary().names().size(), 1u);
  EXPECT_EQ(temporary().read(temporary().names()[0] + "/member.txt"), "new old text");
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, BetweenTwoArchivesFilesGoToTheDiskOnly) {
  left().write("member.txt", "old text");
  shell("zip -q pack.zip member.txt && zip -q " + right().path("other.zip") +
        " member.txt && rm member.txt");
  const std::string before = right().read("other.zip");
  start();
  press(XK_Tab);
  enter("other.zip", "member.txt");
  press(XK_Tab);
  enter("pack.zip", "member.txt");
  moveTo("member.txt");
  press(XK_F5);
  expectText("Extract \"member.txt\" to");
  expectText(right().path() + "/");
  press(XK_Return);
  expectSoon("the file", [this] { return right().read("member.txt") == "old text"; });
  expectAwaited();
  press(XK_F5);
  expectText("Extract \"member.txt\" to");
  type(right().path("other.zip") + "/");
  press(XK_Return);
  expectText("Directory does not exist");
  press(XK_Return);
  expectNoText("Directory does not exist");
  EXPECT_EQ(right().read("other.zip"), before);
  EXPECT_EQ(quit(), 0);
}

TEST_F(ArchiveWorkTest, ARequestToEndKeepsTheEditAndSaysWhere) {
  home().makeDir(".tdx");
  home().write(".tdx/td.ini", "[Archiver:ZIP]\nCompress=sleep 1000 #\n");
  left().write("member.txt", "old text");
  shell("zip -q pack.zip member.txt && rm member.txt");
  const std::string before = left().read("pack.zip");
  start();
  enter("pack.zip", "member.txt");
  editInFront("member.txt", "new ");
  expectAwaited();
  testing::internal::CaptureStderr();
  kill(getpid(), SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(left().read("pack.zip"), before);
  ASSERT_EQ(temporary().names().size(), 1u);
  const std::string kept = temporary().names()[0] + "/member.txt";
  EXPECT_EQ(temporary().read(kept), "new old text");
  EXPECT_NE(told.find(temporary().path(kept)), std::string::npos) << told;
}

// What is asked to end while a tool is at its work.
class ArchiveHangup : public ArchiveWorkTest {
 protected:
  // The tool of a zip for this task says that it has begun, and goes on for ever.
  void startWithTool(const std::string& key, const std::string& tool) {
    home().makeDir(".tdx");
    home().write(".tdx/td.ini", "[Archiver:ZIP]\n" + key + "=" + tool + "\n");
    left().write("member.txt", "old text");
    shell("zip -q pack.zip member.txt && rm member.txt");
    start();
  }
  // A packer that has written half of its new archive, and waits for the rest of a file that never
  // comes: the other end of the pipe is held here.
  void startWithPacker() {
    const std::string pipe = home().path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    pipe_ = Descriptor(open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    startWithTool("Compress", "zip -q %a - <" + pipe + " #");
  }
  void expectHalfPacked() {
    size_t written = 0;
    uint32_t state = 1;
    std::string block(4096, '\0');
    expectSoon("the packer at its work", [&] {
      for (char& byte : block)
        byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
      const ssize_t count = write(pipe_.get(), block.data(), block.size());
      if (count > 0) written += static_cast<size_t>(count);
      return written > 300'000 && left().names().size() > 1;
    });
  }
  std::string begun() const { return "touch " + home().path("begun") + "; "; }
  void expectBegun() {
    expectSoon("the tool at its work", [this] { return home().exists("begun"); });
  }

 private:
  Descriptor pipe_;
};

TEST_F(ArchiveHangup, DuringAnUpdateKeepsTheEditAndTheOldArchive) {
  startWithPacker();
  const std::string before = left().read("pack.zip");
  enter("pack.zip", "member.txt");
  editInFront("member.txt", "new ");
  press(XK_Page_Up, {XK_Control_L});
  expectHalfPacked();
  testing::internal::CaptureStderr();
  kill(getpid(), SIGHUP);
  EXPECT_EQ(waitForEnd(), 0);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(left().read("pack.zip"), before);
  EXPECT_EQ(left().names(), std::vector<std::string>{"pack.zip"});
  ASSERT_EQ(temporary().names().size(), 1u);
  const std::string kept = temporary().names()[0] + "/member.txt";
  EXPECT_EQ(temporary().read(kept), "new old text");
  EXPECT_NE(told.find(temporary().path(kept)), std::string::npos) << told;
}

TEST_F(ArchiveHangup, DuringAnExtractionLeavesNothing) {
  startWithTool("Extract", "printf half >member.txt; " + begun() + "sleep 1000 #");
  const std::string before = left().read("pack.zip");
  enter("pack.zip", "member.txt");
  moveTo("member.txt");
  press(XK_F6);
  expectText("Extract and Move \"member.txt\" to");
  press(XK_Return);
  expectBegun();
  kill(getpid(), SIGHUP);
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_EQ(right().names(), std::vector<std::string>{});
  EXPECT_EQ(left().names(), std::vector<std::string>{"pack.zip"});
  EXPECT_EQ(left().read("pack.zip"), before);
  expectNoTemporaries();
}

TEST_F(ArchiveHangup, WhileAMemberIsTakenOutToBeSeenLeavesNothing) {
  startWithTool("Extract", "printf half >member.txt; " + begun() + "sleep 1000 #");
  enter("pack.zip", "member.txt");
  moveTo("member.txt");
  press(XK_F3);
  expectBegun();
  kill(getpid(), SIGHUP);
  EXPECT_EQ(waitForEnd(), 0);
  expectNoTemporaries();
  EXPECT_EQ(left().names(), std::vector<std::string>{"pack.zip"});
}

TEST_F(ArchiveHangup, DuringAMoveIntoAnArchiveKeepsTheFiles) {
  right().write("file", "to be moved");
  startWithPacker();
  const std::string before = left().read("pack.zip");
  enter("pack.zip", "member.txt");
  press(XK_Tab);
  moveTo("file");
  press(XK_F6);
  expectText("Compress and Move \"file\" to");
  press(XK_Return);
  expectHalfPacked();
  kill(getpid(), SIGHUP);
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_EQ(right().read("file"), "to be moved");
  EXPECT_EQ(left().read("pack.zip"), before);
  EXPECT_EQ(left().names(), std::vector<std::string>{"pack.zip"});
  expectNoTemporaries();
}

}  // namespace
