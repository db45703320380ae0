#include "panels/picture/info_panel.h"

#include <sys/stat.h>
#include <unistd.h>

#include <random>
#include <regex>

#include "drawn_panels.h"
#include "foundation/memory_facts.h"
#include "foundation/path_info.h"
#include "foundation/regular_file.h"
#include "foundation/status.h"
#include "foundation/text_format.h"
#include "panels/picture/directory_info.h"
#include "panels/reader/volume_facts.h"
#include "support/fault_hook.h"

namespace {

// An archive that only tells about itself.
class ToldArchive : public OpenArchive {
 public:
  ToldArchive(const wchar_t* path, ArchiveFacts facts) : path_(path), facts_(std::move(facts)) {}
  const Westring& path() const override { return path_; }
  int first(const Westring&, entry*&) override { return Status::NoMoreFiles; }
  int next(entry*&) override { return Status::NoMoreFiles; }
  ArchiveFacts facts() const override { return facts_; }

 private:
  Westring path_;
  ArchiveFacts facts_;
};

}  // namespace

// The left panel shows a directory, the right one tells about it.
class InfoPanelTest : public DrawnPanelsTest {
 protected:
  static constexpr int FirstColumn = 41;

  void SetUp() override {
    DrawnPanelsTest::SetUp();
    left().path = directory_.wide();
    right().type = PanelType::Info;
  }

  // A row inside the frame.
  std::string infoRow(int row) const { return trimmed(rawRow(row)); }
  std::string rawRow(int row) const {
    return rowText(panelPair().panelWidth() + 1, row + 1, panelPair().panelWidth() - 2);
  }
  int infoAttr(int column, int row) const { return attrAt(FirstColumn + column, row + 1); }
  static std::string trimmed(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }
  static bool matches(const std::string& text, const char* pattern) {
    return std::regex_match(text, std::regex(pattern));
  }
  // The row of the note's title, which the rule ends in.
  int noteRow() const { return panelPair().side[1].infoRows - 1; }
  // The rows below the disk's figures, which vary from one look to the next.
  std::string notePart() const {
    std::string text;
    for (int row = 10; row < panelPair().panelRows + 2; ++row) text += rawRow(row) + "\n";
    return text;
  }

  TempDir directory_;
};

TEST_F(InfoPanelTest, TheRowsStandWhereTheyBelong) {
  GlobalOptions::ThousandSep = true;
  addDirectory(left(), "..");
  addDirectory(left(), "sub");
  addFile(left(), "a", 1000);
  addFile(left(), "b", 234);
  open();
  EXPECT_EQ(infoRow(0), "             TD/X V" TD_VERSION);
  for (int row : {1, 2, 3, 7}) EXPECT_EQ(infoRow(row), "") << row;
  std::string rule;
  for (int i = 0; i < 38; ++i) rule += "─";
  EXPECT_EQ(rawRow(4), rule);
  EXPECT_TRUE(matches(rawRow(5), " *[0-9,]+K? total physical memory *")) << rawRow(5);
  EXPECT_TRUE(matches(rawRow(6), " *[0-9,]+K? free physical memory *")) << rawRow(6);
  EXPECT_TRUE(matches(rawRow(8), " *[0-9,]+[KMG]? total bytes *")) << rawRow(8);
  EXPECT_TRUE(matches(rawRow(9), " *[0-9,]+[KMG]? bytes free *")) << rawRow(9);
  EXPECT_EQ(infoRow(10), "           2 files use 1,234 bytes in");
  const std::string path = directory_.path();
  EXPECT_EQ(infoRow(11).substr((38 - path.length()) / 2), path);
}

TEST_F(InfoPanelTest, FiguresEndAtColumnTwelveInTheTaggedColour) {
  open();
  for (int row : {5, 6, 8, 9, 10}) {
    EXPECT_TRUE(isdigit(rawRow(row)[11]) || isalpha(rawRow(row)[11])) << rawRow(row);
    EXPECT_EQ(rawRow(row)[12], ' ');
    EXPECT_EQ(infoAttr(11, row), colourOf(Colour::Tagged));
    EXPECT_EQ(infoAttr(12, row), colourOf(Colour::Panel));
    EXPECT_EQ(infoAttr(13, row), colourOf(Colour::Panel));
  }
  EXPECT_EQ(infoRow(10), "           0 files use 0 bytes in");
  EXPECT_EQ(infoAttr(23, 10), colourOf(Colour::Tagged));
  EXPECT_EQ(infoAttr(25, 10), colourOf(Colour::Panel));
}

TEST_F(InfoPanelTest, AWiderScreenMovesTheFiguresByUpToThirteenColumns) {
  struct Row {
    int columns;
    int end;
  };
  for (const Row& row : {Row{80, 12}, {84, 13}, {100, 17}, {132, 25}, {200, 25}}) {
    setScreen(row.columns, 25);
    open();
    const std::string text = rawRow(8);
    EXPECT_EQ(text.substr(row.end, 12), " total bytes") << row.columns << text;
    EXPECT_NE(text[row.end - 1], ' ') << row.columns;
  }
}

TEST_F(InfoPanelTest, OneFileIsTheSingular) {
  addFile(left(), "only", 7);
  open();
  EXPECT_EQ(infoRow(10), "           1 file uses 7 bytes in");
}

TEST_F(InfoPanelTest, ALongLineOfUseMovesLeftAndStaysWhole) {
  GlobalOptions::ThousandSep = true;
  addNumbered(left(), 999);
  left().entries[0]->size = 876543210;
  open();
  const std::string text = rawRow(10);
  EXPECT_TRUE(matches(text, " *999 files use [0-9,]+ bytes in")) << text;
  EXPECT_NE(text.back(), ' ');
}

TEST_F(InfoPanelTest, FiguresThatNeedAllTheRoomAreShortened) {
  GlobalOptions::ThousandSep = true;
  for (int i = 0; i < 100000; ++i) addFile(left(), "x", 1ULL << 40);
  open();
  EXPECT_TRUE(matches(rawRow(10), " *100,000 files use [0-9,]+[KMGT] bytes in")) << rawRow(10);
}

TEST_F(InfoPanelTest, WithoutSeparatorsFiguresArePlain) {
  GlobalOptions::ThousandSep = false;
  addFile(left(), "a", 1234567);
  open();
  EXPECT_EQ(infoRow(10), "          1 file uses 1234567 bytes in");
  EXPECT_EQ(rawRow(5).find(','), std::string::npos);
}

TEST_F(InfoPanelTest, ADirectoryThatHasGoneShowsTheSystemsMessageAndStops) {
  left().path = directory_.wide("gone");
  open();
  EXPECT_EQ(infoRow(7), "      No such file or directory");
  for (int row = 8; row < 21; ++row) EXPECT_EQ(infoRow(row), "") << row;
  EXPECT_EQ(right().infoRows, 21);
}

TEST_F(InfoPanelTest, AVolumeThatDoesNotAnswerSaysSoAndStops) {
  directory_.write("dirinfo", "a note\n");
  open();
  {
    FaultHook hook("statFs", EIO);
    drawPanel(right());
  }
  EXPECT_EQ(infoRow(7), "");
  EXPECT_EQ(infoRow(8), "");
  EXPECT_EQ(infoRow(9), "          Cannot read drive");
  for (int row = 10; row < 21; ++row) EXPECT_EQ(infoRow(row), "") << row;
}

TEST_F(InfoPanelTest, TheDiskFiguresAreThoseOfTheSystem) {
  uint64_t total = 0, free = 0, unit = 0;
  ASSERT_EQ(diskSpace(left().path, total, free, unit), 0);
  open();
  const std::string expected = toUtf8(padLeft(formatPlainSize(total, 12), 12)).data();
  EXPECT_EQ(rawRow(8).substr(0, 12), expected);
}

TEST_F(InfoPanelTest, ALongPathIsShortenedToTheWidth) {
  left().path = directory_.wide(std::string(60, 'x'));
  directory_.makeDir(std::string(60, 'x'));
  open();
  const std::string text = rawRow(11);
  EXPECT_TRUE(matches(text, "/tmp/\\.\\.\\.x{30}")) << text;
}

TEST_F(InfoPanelTest, AnArchiveShowsItsOwnFigures) {
  GlobalOptions::ThousandSep = true;
  left().path = L"/data/some-archive-with-a-rather-long-name.zip/inner";
  left().archive = std::make_unique<ToldArchive>(L"/data/some-archive-with-a-rather-long-name.zip",
                                                 ArchiveFacts{200000, 75000, L"ZIP"});
  open();
  EXPECT_EQ(infoRow(8), "     200,000 total uncompressed");
  EXPECT_EQ(infoRow(9), "      75,000 total compressed");
  EXPECT_EQ(infoRow(10), "       62.5% total compression");
  EXPECT_EQ(infoRow(11), "/data/...-a-rather-long-name.zip/inner");
  EXPECT_EQ(infoRow(12), " Archive : some-archive-with-a-rath►");
  EXPECT_EQ(infoRow(13), " Type    : ZIP");
  EXPECT_EQ(right().infoRows, 15);
  EXPECT_EQ(infoAttr(11, 10), colourOf(Colour::Tagged));
}

TEST_F(InfoPanelTest, TheWholePanelOfAnArchive) {
  left().path = L"/data/songs.zip";
  left().archive =
      std::make_unique<ToldArchive>(L"/data/songs.zip", ArchiveFacts{98765432, 87654321, L"ZIP"});
  open();
  // The memory figures alone vary: each digit of theirs and the blanks ahead.
  std::string text = panelText(1);
  for (const char* row : {" total physical", " free physical"}) {
    const size_t end = text.find(row);
    ASSERT_NE(end, std::string::npos);
    text.replace(end - 12, 12, "############");
  }
  expectGoldenText("info_archive", text);
}

TEST_F(InfoPanelTest, ARuleStandsAboveThePlaceOfTheNote) {
  open();
  const int row = noteRow();
  std::string rule;
  for (int i = 0; i < 38; ++i) rule += "─";
  EXPECT_EQ(rawRow(row), rule);
  for (int below = row + 1; below < 21; ++below) EXPECT_EQ(infoRow(below), "") << below;
}

TEST_F(InfoPanelTest, TheNoteFollowsItsTitle) {
  directory_.write("dirinfo", "first line\r\nsecond\n\nfourth");
  open();
  const int row = noteRow();
  EXPECT_NE(rawRow(row).find("─ Dir Info ─"), std::string::npos) << rawRow(row);
  EXPECT_EQ(infoAttr(19, row), colourOf(Colour::Tagged));
  EXPECT_EQ(infoAttr(0, row), colourOf(Colour::Panel));
  EXPECT_EQ(infoRow(row + 1), " first line");
  EXPECT_EQ(infoRow(row + 2), " second");
  EXPECT_EQ(infoRow(row + 3), "");
  EXPECT_EQ(infoRow(row + 4), " fourth");
  EXPECT_EQ(infoRow(row + 5), "");
}

TEST_F(InfoPanelTest, AnEmptyNoteHasItsTitle) {
  directory_.write("dirinfo", "");
  open();
  EXPECT_NE(rawRow(noteRow()).find(" Dir Info "), std::string::npos);
}

TEST_F(InfoPanelTest, LinesOfANoteAreCutThreeColumnsShort) {
  directory_.write("dirinfo", std::string(80, 'y'));
  open();
  EXPECT_EQ(infoRow(noteRow() + 1), " " + std::string(35, 'y'));
  EXPECT_EQ(infoRow(noteRow() + 2), "");
}

TEST_F(InfoPanelTest, ANoteLongerThanThePanelIsCutAtTheLastRow) {
  std::string content;
  for (int i = 1; i <= 50; ++i) content += "line " + std::to_string(i) + "\n";
  directory_.write("dirinfo", content);
  open();
  const int lines = 20 - noteRow();
  EXPECT_EQ(infoRow(20), " line " + std::to_string(lines));
  EXPECT_EQ(rowText(40, 22, 40).substr(0, 3), "╚");
  EXPECT_EQ(panelText(1).find("line " + std::to_string(lines + 1)), std::string::npos);
}

TEST_F(InfoPanelTest, WhateverIsNoRegularFileIsNoNote) {
  open();
  const std::string without = notePart();
  directory_.makeDir("dirinfo");
  drawPanel(right());
  EXPECT_EQ(notePart(), without);
  rmdir(directory_.path("dirinfo").c_str());
  ASSERT_EQ(mkfifo(directory_.path("dirinfo").c_str(), 0600), 0);
  drawPanel(right());
  EXPECT_EQ(notePart(), without);
  unlink(directory_.path("dirinfo").c_str());
  directory_.link("/dev/zero", "dirinfo");
  drawPanel(right());
  EXPECT_EQ(notePart(), without);
  unlink(directory_.path("dirinfo").c_str());
  directory_.link("nowhere", "dirinfo");
  drawPanel(right());
  EXPECT_EQ(notePart(), without);
}

TEST_F(InfoPanelTest, ANoteBehindALinkIsShown) {
  directory_.write("real", "linked note\n");
  directory_.link("real", "dirinfo");
  open();
  EXPECT_EQ(infoRow(noteRow() + 1), " linked note");
}

TEST_F(InfoPanelTest, AnEndlessNoteIsReadOnlyAsFarAsItCanShow) {
  directory_.write("dirinfo", "");
  ASSERT_EQ(truncate(directory_.path("dirinfo").c_str(), off_t{1} << 40), 0);
  FaultHook hook;
  open();
  EXPECT_EQ(infoRow(noteRow() + 1), "");
  EXPECT_LT(hook.calls("read"), 100);
}

TEST_F(InfoPanelTest, ALowWindowShowsWhatFits) {
  directory_.write("dirinfo", "a note\n");
  GlobalOptions::FullScreen = false;
  fetchScreenSize();
  open();
  ASSERT_EQ(panelPair().panelRows, 11);
  EXPECT_NE(infoRow(11).find(directory_.path()), std::string::npos);
  EXPECT_EQ(rowText(40, 14, 40).substr(0, 3), "╚");
  EXPECT_LE(right().infoRows, 13);
  for (int y = 15; y < 25; ++y) EXPECT_EQ(trimmed(rowText(y)), "") << y;
}

TEST_F(InfoPanelTest, ItTellsAboutTheOtherPanelOnEitherSide) {
  left().type = PanelType::Info;
  right().type = PanelType::Files;
  right().path = directory_.wide();
  left().path = L"/nowhere";
  addFile(right(), "a", 5);
  open();
  EXPECT_EQ(trimmed(rowText(1, 11, 38)), "           1 file uses 5 bytes in");
  EXPECT_EQ(attrAt(20, 0), colourOf(Colour::Highlight));
  EXPECT_EQ(rowText(17, 0, 6), " INFO ");
}

TEST_F(InfoPanelTest, AFilePanelLeavesNothingBehindOnTheInfoPanelAndBack) {
  right().type = PanelType::Files;
  right().style = PanelStyle::Brief;
  addNumbered(right(), 60);
  open();
  const std::string files = panelText(1);
  right().type = PanelType::Info;
  drawPanel(right());
  const std::string info = panelText(1);
  EXPECT_EQ(info.find("f0"), std::string::npos);
  for (const char* mark : {"│", "╤", "╧", "╟", "╢", "┴", "┬", "┼"}) {
    EXPECT_EQ(info.find(mark), std::string::npos) << mark << "\n" << info;
  }
  right().type = PanelType::Files;
  drawPanel(right());
  EXPECT_EQ(panelText(1), files);
}

// The texts behind.

TEST(SavingText, OneDecimalAndAPercentSign) {
  struct Row {
    uint64_t size;
    uint64_t packed;
    const wchar_t* text;
  };
  for (const Row& row : {Row{1000, 250, L"75.0%"},
                         {3, 1, L"66.7%"},
                         {10, 10, L"0.0%"},
                         {10, 12, L"-20.0%"},
                         {0, 0, L"0.0%"},
                         {0, 5, L"0.0%"}}) {
    EXPECT_EQ(exact(savingText(row.size, row.packed)), row.text) << row.size << " " << row.packed;
  }
}

class NoteLinesTest : public testing::Test {
 protected:
  void SetUp() override { GlobalOptions::setDefaultOptions(); }
  static std::vector<std::wstring> lines(const std::string& content, int width = 35,
                                         int most = 100) {
    std::vector<std::wstring> result;
    for (const Westring& line : noteLines(content, width, most)) result.push_back(line.data());
    return result;
  }
  using Lines = std::vector<std::wstring>;
};

TEST_F(NoteLinesTest, TabsGoToTheNextStop) {
  GlobalOptions::TabWidth = 4;
  EXPECT_EQ(lines("\tx\nab\tx\nabcd\tx\n\t\tx"),
            (Lines{L"    x", L"ab  x", L"abcd    x", L"        x"}));
  GlobalOptions::TabWidth = 8;
  EXPECT_EQ(lines("ab\tx"), (Lines{L"ab      x"}));
}

TEST_F(NoteLinesTest, ANonsenseTabWidthActsAsOne) {
  for (int width : {0, -3}) {
    GlobalOptions::TabWidth = width;
    EXPECT_EQ(lines("a\tb"), (Lines{L"a b"})) << width;
  }
}

TEST_F(NoteLinesTest, TabsAreExpandedBeforeALineIsCut) {
  GlobalOptions::TabWidth = 8;
  EXPECT_EQ(lines("a\tbcdef", 10), (Lines{L"a       bc"}));
}

TEST_F(NoteLinesTest, ALineIsReadInFiveHundredBytesAndItsRestPassedOver) {
  EXPECT_EQ(lines(std::string(600, 'z') + "\nnext", 1000),
            (Lines{std::wstring(500, L'z'), L"next"}));
}

TEST_F(NoteLinesTest, NoMoreLinesAreMadeThanWanted) {
  EXPECT_EQ(lines("a\nb\nc\n", 10, 2), (Lines{L"a", L"b"}));
  EXPECT_EQ(lines("a\nb\nc\n", 10, 0), Lines{});
  EXPECT_EQ(lines("a\n", -5, 2), Lines{L""});
}

TEST_F(NoteLinesTest, BytesOfAnyKindAreShownAsText) {
  EXPECT_EQ(lines("gr\xC3\xBC\xC3\x9F"), Lines{L"gr\u00FC\u00DF"});
  EXPECT_EQ(lines("a\xFFz"), Lines{L"a\u00FFz"});
  EXPECT_EQ(lines(std::string("ab\0cd\nef", 8)), (Lines{L"ab", L"ef"}));
}

TEST_F(NoteLinesTest, ANoteCutAnywhereStaysHarmless) {
  const std::string note = "one\ttwo\r\n\xE2\x94\x80 \xF0\x9F\x98\x80\n\n\tend\r";
  for (size_t length = 0; length <= note.size(); ++length) {
    for (const auto& line : lines(note.substr(0, length), 12)) EXPECT_LE(line.size(), 12u);
  }
}

TEST(MemoryFacts, TheTableCountsInKilobytes) {
  const auto facts = parseMemoryTable(
      "MemTotal:       16314632 kB\nMemFree:          500000 kB\nMemAvailable:    9000001 kB\n");
  ASSERT_TRUE(facts);
  EXPECT_EQ(facts->total, 16314632ULL * 1024);
  EXPECT_EQ(facts->free, 9000001ULL * 1024);
}

TEST(MemoryFacts, ATableWithoutAFigureTellsNothing) {
  EXPECT_FALSE(parseMemoryTable(""));
  EXPECT_FALSE(parseMemoryTable("MemTotal:  5 kB\n"));
  EXPECT_FALSE(parseMemoryTable("MemTotal:\nMemAvailable: x\n"));
  EXPECT_FALSE(parseMemoryTable("XMemTotal: 5 kB\nXMemAvailable: 4 kB\n"));
}

TEST(MemoryFacts, ThisSystemTellsThem) {
  const auto facts = memoryFacts();
  ASSERT_TRUE(facts);
  EXPECT_GT(facts->free, 0u);
  EXPECT_LT(facts->free, facts->total);
}

TEST(VolumeFacts, TheMountNumberLeadsToTheFileSystem) {
  const std::string table =
      "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
      "36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 extra:2 - fuse.sshfs host:dir rw\n"
      "37 35 98:1 / /mnt3 rw no dash here\n";
  EXPECT_EQ(findMount(table, 22).fileSystem, "ext4");
  EXPECT_EQ(findMount(table, 22).source, "/dev/sda1");
  EXPECT_EQ(findMount(table, 36).fileSystem, "fuse.sshfs");
  EXPECT_EQ(findMount(table, 36).source, "host:dir");
  EXPECT_EQ(findMount(table, 37).fileSystem, "");
  EXPECT_EQ(findMount(table, 99).fileSystem, "");
  EXPECT_EQ(findMount("", 22).fileSystem, "");
}

TEST(SystemTables, CutOrDamagedTheyStayHarmless) {
  const std::string memory = "MemTotal:       16314632 kB\nMemAvailable:    9000001 kB\n";
  const std::string mounts =
      "22 1 8:1 / / rw shared:1 - ext4 /dev/sda1 rw\n36 35 0:9 / /x rw - a b\n";
  const std::string note = "one\ttwo\r\n\xE2\x94\x80 \xF0\x9F\x98\x80\n\n\tend";
  for (size_t length = 0; length <= memory.size(); ++length) {
    const auto facts = parseMemoryTable(memory.substr(0, length));
    EXPECT_EQ(facts ? facts->total : 16314632ULL * 1024, 16314632ULL * 1024);
  }
  for (size_t length = 0; length < mounts.size(); ++length) {
    const std::string kind = findMount(mounts.substr(0, length), 22).fileSystem;
    EXPECT_EQ(std::string("ext4").substr(0, kind.size()), kind);
  }
  std::mt19937 random(4711);
  for (int round = 0; round < 2000; ++round) {
    std::string text = round % 3 == 0 ? memory : round % 3 == 1 ? mounts : note;
    text[random() % text.size()] = static_cast<char>(random());
    parseMemoryTable(text);
    findMount(text, 22);
    for (const Westring& line : noteLines(text, 35, 5)) EXPECT_LE(line.length(), 35);
  }
}

TEST(VolumeFacts, ADeviceIsFoundByTheLinksToIt) {
  TempDir directory;
  directory.link("/dev/null", "My\\x20Disk\\x2f1");
  directory.link("nowhere", "Aaa");
  struct stat info;
  ASSERT_EQ(stat("/dev/null", &info), 0);
  EXPECT_EQ(nameOfDevice(directory.path().c_str(), info.st_rdev), "My Disk/1");
  EXPECT_EQ(nameOfDevice(directory.path().c_str(), info.st_rdev + 1), "");
  EXPECT_EQ(nameOfDevice(directory.path("none").c_str(), info.st_rdev), "");
}

TEST(VolumeFacts, OnlyShortIdsAreSerialNumbers) {
  EXPECT_EQ(exact(serialOfId("1a2b-3C4D")), L"1A2B3C4D");
  EXPECT_EQ(exact(serialOfId("00FF-0001")), L"FF0001");
  EXPECT_EQ(exact(serialOfId("0123456789ABCDEF")), L"123456789ABCDEF");
  EXPECT_EQ(exact(serialOfId("a1b2c3d4-0000-1111-2222-333344445555")), L"");
  EXPECT_EQ(exact(serialOfId("WXYZ-0001")), L"");
  EXPECT_EQ(exact(serialOfId("")), L"");
}

TEST(VolumeFacts, TheFileSystemOfADirectoryIsKnownHere) {
  EXPECT_EQ(exact(volumeFacts(L"/proc").fileSystem), L"proc");
  EXPECT_EQ(exact(volumeFacts(L"/nowhere/at/all").fileSystem), L"");
}

TEST(SmallFile, OnlyTheBeginningIsRead) {
  TempDir directory;
  directory.write("a", "0123456789");
  EXPECT_EQ(readBeginning(directory.path("a").c_str(), 4), "0123");
  EXPECT_EQ(readBeginning(directory.path("a").c_str(), 40), "0123456789");
  EXPECT_EQ(readBeginning(directory.path("a").c_str(), 0), "");
  EXPECT_FALSE(readBeginning(directory.path("b").c_str(), 4));
  EXPECT_FALSE(readBeginning(directory.path().c_str(), 4));
}

TEST(SmallFile, AnErrorWhileReadingIsNoContent) {
  TempDir directory;
  directory.write("a", "0123456789");
  for (const char* call : {"stat", "open", "fstat", "read"}) {
    FaultHook hook(call, EIO);
    EXPECT_FALSE(readBeginning(directory.path("a").c_str(), 4)) << call;
    EXPECT_TRUE(hook.hit()) << call;
  }
}
