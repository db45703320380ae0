#include "panels/picture/status_line.h"

#include <cerrno>

#include "drawn_panels.h"
#include "foundation/status.h"
#include "foundation/text_format.h"
#include "panels/one_path_tree.h"

class StatusLineTest : public DrawnPanelsTest {
 protected:
  std::string drawn() {
    drawStatusLine(left());
    std::string text = statusText(0);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }
  // Of the whole line.
  void expectColour(Colour colour) {
    for (int x = 1; x < 39; ++x) EXPECT_EQ(attrAt(x, 21), colourOf(colour)) << x;
  }
};

TEST_F(StatusLineTest, TheFirstFormThatAppliesIsShown) {
  addFile(left(), "name", 1234);
  open();
  left().readError = Status::NotReady;
  left().quickSearch = L"na";
  left().taggedCount = 1;
  left().taggedSize = 1234;
  EXPECT_EQ(drawn(), " No disk in drive");
  left().readError = EIO;
  EXPECT_EQ(drawn(), " Error reading drive");
  left().readError = 0;
  EXPECT_EQ(drawn(), "Search: na");
  left().quickSearch = L"";
  EXPECT_EQ(drawn(), "    1,234 bytes in 1 selected file");
  left().taggedCount = 0;
  EXPECT_EQ(drawn(), "name");
  left().entries.clear();
  EXPECT_EQ(drawn(), "Directory is empty");
}

TEST_F(StatusLineTest, MessagesStandInTheTaggedColourAcrossTheLine) {
  addFile(left(), "name", 1);
  open();
  left().readError = EIO;
  drawStatusLine(left());
  expectColour(Colour::Tagged);
  left().readError = 0;
  left().quickSearch = L"n";
  drawStatusLine(left());
  expectColour(Colour::Tagged);
  left().quickSearch = L"";
  tag(left(), 0);
  drawStatusLine(left());
  expectColour(Colour::Tagged);
}

TEST_F(StatusLineTest, AnEmptyListAndAnEntryStandInThePanelColour) {
  open();
  drawStatusLine(left());
  expectColour(Colour::Panel);
  addFile(left(), "name", 1);
  drawStatusLine(left());
  expectColour(Colour::Panel);
}

TEST_F(StatusLineTest, ALongSearchShowsItsEnd) {
  addFile(left(), "name", 1);
  open();
  left().quickSearch = L"abcdefghijklmnopqrstuvwxyz0123456789";
  EXPECT_EQ(drawn(), "Search: ghijklmnopqrstuvwxyz0123456789");
}

TEST_F(StatusLineTest, OneTaggedFileIsTheSingularMoreThePlural) {
  addFile(left(), "a", 500);
  addFile(left(), "b", 250);
  open();
  tag(left(), 0);
  EXPECT_EQ(drawn(), "     500 bytes in 1 selected file");
  tag(left(), 1);
  EXPECT_EQ(drawn(), "    750 bytes in 2 selected files");
}

TEST_F(StatusLineTest, TheSumOfTaggedSizesKeepsToItsRoom) {
  addFile(left(), "a", 1);
  open();
  left().taggedCount = 12345;
  left().taggedSize = 123456789;
  EXPECT_EQ(drawn(), " 117M bytes in 12,345 selected files");
  left().taggedCount = 2;
  EXPECT_EQ(drawn(), "  120,563K bytes in 2 selected files");
}

TEST_F(StatusLineTest, InFullStyleTheNameHasTheWholeLine) {
  addFile(left(), "a name that is longer than its column", 1);
  open();
  EXPECT_EQ(drawn(), "a name that is longer than its column");
}

TEST_F(StatusLineTest, ALinkShowsItsTargetBehindAMark) {
  addLink(left(), "link", L"some/where/else");
  open();
  EXPECT_EQ(drawn(), "link » some/where/else");
  EXPECT_EQ(attrAt(6, 21), colourOf(Colour::Tagged));
  EXPECT_EQ(attrAt(5, 21), colourOf(Colour::Panel));
  EXPECT_EQ(attrAt(7, 21), colourOf(Colour::Panel));
}

TEST_F(StatusLineTest, TheMarkOfALinkKeepsItsOwnBackground) {
  colourTable[static_cast<int>(Colour::Tagged)] = 0x4E;
  addLink(left(), "link", L"target");
  open();
  EXPECT_EQ(attrAt(6, 21), 0x4E);
}

TEST_F(StatusLineTest, InOtherStylesTheEntryShowsInTheFormOfTheFullStyle) {
  addDirectory(left(), "sub");
  addFile(left(), "file.txt", 12345);
  for (PanelStyle style :
       {PanelStyle::Brief, PanelStyle::Wide, PanelStyle::BriefWide, PanelStyle::Unix}) {
    left().style = style;
    left().cursor = 0;
    open();
    EXPECT_EQ(drawn(), "sub          │►SUBDIR◄│09-07-04│ 1:05p");
    left().cursor = 1;
    EXPECT_EQ(drawn(), "file.txt     │   12345│09-07-04│ 1:05p");
    expectColour(Colour::Panel);
    EXPECT_EQ(left().style, style);
  }
}

TEST_F(StatusLineTest, InTreeStyleItIsThePathOfTheNode) {
  const OnePathTree tree(L"/usr/share/some/deep/directory/tree/leaf");
  addDirectory(left(), "leaf");
  left().style = PanelStyle::Tree;
  open();
  EXPECT_EQ(drawn(), "/usr/.../some/deep/directory/tree/leaf");
}

TEST_F(StatusLineTest, APanelWithoutAWindowOrOfInfoTypeHasNone) {
  addFile(left(), "name", 1);
  drawStatusLine(left());
  EXPECT_EQ(drawn(), "");
  left().type = PanelType::Info;
  open();
  const std::string before = screenText();
  drawStatusLine(left());
  EXPECT_EQ(screenText(), before);
}
