#include <memory>

#include "drawn_panels.h"
#include "foundation/status.h"
#include "panels/picture/panel_title.h"

namespace {

class SomeArchive : public OpenArchive {
 public:
  const Westring& path() const override { return path_; }
  int first(const Westring&, entry*&) override { return Status::NoMoreFiles; }
  int next(entry*&) override { return Status::NoMoreFiles; }

 private:
  Westring path_ = L"/data/a.zip";
};

}  // namespace

class PanelTitleTest : public DrawnPanelsTest {
 protected:
  void SetUp() override {
    DrawnPanelsTest::SetUp();
    // A style without marks in the border near the title.
    left().style = right().style = PanelStyle::Tree;
    left().type = right().type = PanelType::Files;
  }
  // The text between the border's lines, with its blanks.
  std::string title(int side) const {
    const std::string row = rowText(side * 40, 0, 40);
    const size_t first = row.find(' ');
    return first == std::string::npos ? "" : row.substr(first, row.rfind(' ') - first + 1);
  }
  int titleColumn(int side) const {
    int x = side * 40;
    while (x < side * 40 + 40 && cellAt(x, 0).ch != L' ') ++x;
    return x - side * 40;
  }
  void show(const wchar_t* path, PanelStyle style = PanelStyle::Full) {
    left().style = right().style = style;
    left().path = right().path = path;
    open();
  }
};

TEST_F(PanelTitleTest, ThePathStandsInTheMiddleOfTheTopBorder) {
  show(L"/home/me");
  EXPECT_EQ(title(0), " /home/me ");
  EXPECT_EQ(titleColumn(0), 15);
  show(L"/home/you");
  EXPECT_EQ(titleColumn(0), 14);
  EXPECT_EQ(titleColumn(1), 14);
}

TEST_F(PanelTitleTest, TheActiveTitleIsHighlighted) {
  show(L"/home/me");
  for (int x = 15; x < 25; ++x) {
    EXPECT_EQ(attrAt(x, 0), colourOf(Colour::Highlight)) << x;
    EXPECT_EQ(attrAt(40 + x, 0), colourOf(Colour::Panel)) << x;
  }
  EXPECT_EQ(attrAt(14, 0), colourOf(Colour::Panel));
  EXPECT_EQ(attrAt(25, 0), colourOf(Colour::Panel));
  setActiveSide(1);
  markActivePanel();
  EXPECT_EQ(attrAt(20, 0), colourOf(Colour::Panel));
  EXPECT_EQ(attrAt(60, 0), colourOf(Colour::Highlight));
}

TEST_F(PanelTitleTest, AnOpenArchiveHasTheTaggedColours) {
  left().archive = std::make_unique<SomeArchive>();
  right().archive = std::make_unique<SomeArchive>();
  show(L"/data/a.zip/inner");
  EXPECT_EQ(title(0), " /data/a.zip/inner ");
  EXPECT_EQ(attrAt(20, 0), colourOf(Colour::HighlightTagged));
  EXPECT_EQ(attrAt(60, 0), colourOf(Colour::Tagged));
}

TEST_F(PanelTitleTest, AFilterShowsAsAQuestionMark) {
  left().filter = L"*.c";
  show(L"/home/me");
  EXPECT_EQ(title(0), " /home/me/? ");
  EXPECT_EQ(title(1), " /home/me ");
  left().filter = L"*.c";
  show(L"/");
  EXPECT_EQ(title(0), " /? ");
}

TEST_F(PanelTitleTest, AFilterThatFiltersNothingShowsNoQuestionMark) {
  for (const wchar_t* filter : {L"*", L"", L"  "}) {
    left().filter = filter;
    show(L"/home/me");
    EXPECT_EQ(title(0), " /home/me ");
  }
}

TEST_F(PanelTitleTest, ALongPathIsShortenedToFourLessThanThePanel) {
  show(L"/first/second/third/fourth/fifth/sixth/last");
  EXPECT_EQ(title(0), " /first/...rd/fourth/fifth/sixth/last ");
  EXPECT_EQ(titleColumn(0), 1);
  EXPECT_EQ(cellAt(39, 0).ch, L'\x2557');
}

TEST_F(PanelTitleTest, APathThatJustFitsIsWhole) {
  show((L"/" + Westring(L'x', 35)).data());
  EXPECT_EQ(title(0), " /" + std::string(35, 'x') + " ");
  show((L"/" + Westring(L'x', 36)).data());
  EXPECT_EQ(title(0), " /" + std::string(34, 'x') + "► ");
}

TEST_F(PanelTitleTest, TheClockTakesRoomFromTheRightTitleOnly) {
  GlobalOptions::Clock = true;
  GlobalOptions::TimeMode = 12;
  show((L"/" + Westring(L'x', 50)).data());
  EXPECT_EQ(rowText(0, 0, 40), "╔ /" + std::string(34, 'x') + "► ╗");
  EXPECT_EQ(rowText(40, 0, 34), "╔ /" + std::string(29, 'x') + "► ");
  EXPECT_EQ(attrAt(74, 0), colourOf(Colour::Clock));
  GlobalOptions::TimeMode = 24;
  show((L"/" + Westring(L'x', 50)).data());
  EXPECT_EQ(rowText(40, 0, 34).find("► "), rowText(40, 0, 34).rfind("►"));
  EXPECT_NE(rowText(40, 0, 34).find(" /" + std::string(28, 'x') + "► "), std::string::npos);
}

TEST_F(PanelTitleTest, AMiddlingTitleMovesLeftOfTheClock) {
  GlobalOptions::Clock = true;
  GlobalOptions::TimeMode = 12;
  show(L"/abcdefghijklmnopqrstuvwxyz1234");
  EXPECT_EQ(rowText(40, 0, 34), "╔ /abcdefghijklmnopqrstuvwxyz1234 ");
  EXPECT_EQ(attrAt(74, 0), colourOf(Colour::Clock));
  show(L"/home/me");
  EXPECT_EQ(titleColumn(1), 15);
}

TEST_F(PanelTitleTest, InfoAndTreePanelsHaveTitlesOfTheirOwn) {
  left().type = PanelType::Info;
  right().style = PanelStyle::Tree;
  open();
  EXPECT_EQ(rowText(0, 0, 40).find(" INFO "), std::string("╔").size() * 17);
  EXPECT_EQ(rowText(40, 0, 40).find(" TREE "), std::string("╔").size() * 17);
  EXPECT_EQ(attrAt(18, 0), colourOf(Colour::Highlight));
  EXPECT_EQ(attrAt(58, 0), colourOf(Colour::Panel));
}

TEST_F(PanelTitleTest, TheWindowTitleIsTheActivePathInFiftyColumns) {
  show(L"/home/me");
  EXPECT_NE(console->title().find("/home/me"), std::string::npos);
  show((L"/first/" + Westring(L'x', 80) + L"/end").data());
  const std::string shortened = "/first/..." + std::string(36, 'x') + "/end";
  ASSERT_EQ(shortened.size(), 50u);
  const std::string shown = console->title();
  EXPECT_EQ(shown.substr(shown.size() - 50), shortened);
}

TEST_F(PanelTitleTest, TheWindowTitleIsPlainOrOfATextOrEmpty) {
  setWindowTitle(nullptr);
  EXPECT_EQ(console->title(), "Tandem Deck V" TD_VERSION);
  const Westring name = L"letter.txt", nothing;
  setWindowTitle(&name);
  EXPECT_EQ(console->title(), "TD/X: letter.txt");
  setWindowTitle(&nothing);
  EXPECT_EQ(console->title(), "");
}

TEST_F(PanelTitleTest, TheTitleOfTheInactivePanelIsNotTheWindows) {
  show(L"/home/me");
  right().path = L"/elsewhere";
  drawPanel(right());
  EXPECT_EQ(console->title().find("/elsewhere"), std::string::npos);
  setActiveSide(1);
  markActivePanel();
  EXPECT_NE(console->title().find("/elsewhere"), std::string::npos);
}

TEST_F(PanelTitleTest, ANameThatIsNoTextIsATitleAllTheSame) {
  left().path = decodeFileName("/bad\xFF\xFEname\n\x01");
  left().style = PanelStyle::Full;
  open();
  EXPECT_NE(title(0).find("/bad\xC3\xBF\xC3\xBEname"), std::string::npos) << title(0);
  EXPECT_NE(console->title().find("/bad"), std::string::npos);
}
