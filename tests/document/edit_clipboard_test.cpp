#include "editor/document/edit_clipboard.h"

#include <gtest/gtest.h>

#include "document/document_support.h"

using namespace std::string_literals;

namespace {
// A desktop whose other programs do what the test says.
class PlainDesktop : public DesktopClipboard {
 public:
  void take(std::function<std::wstring()> text) override {
    own_ = std::move(text);
    ours_ = true;
  }
  bool isOurs() override { return ours_; }
  std::wstring text() override { return ours_ ? own_() : foreign_; }

  void copyElsewhere(const std::wstring& text) {
    foreign_ = text;
    ours_ = false;
  }

 private:
  std::function<std::wstring()> own_;
  std::wstring foreign_;
  bool ours_ = false;
};

class Clipboard : public testing::Test {
 protected:
  Clipboard() { clipboard.setDesktop(&desktop); }
  PlainDesktop desktop;
  EditClipboard clipboard;
};
}  // namespace

TEST_F(Clipboard, OwnTextIsPastedWithItsBytesAndLineEnds) {
  Document document;
  ASSERT_TRUE(document.load("a\xFF\r\nb\rc", Utf8));
  clipboard.set(document.span({0, 0}, {2, 1}));
  Document other;
  other.replace({0, 0}, {0, 0}, clipboard.get(LineEndStyle::Lf));
  EXPECT_EQ(writtenBytes(other), "a\xFF\r\nb\rc");
}

TEST_F(Clipboard, OtherProgramsSeeLinesWithoutNulsAndRawBytes) {
  Document document;
  ASSERT_TRUE(document.load("a\xFF\r\nb", Utf8));
  clipboard.set(document.span({0, 0}, {1, 1}));
  EXPECT_EQ(desktop.text(), L"a\u2302\nb");
}

TEST_F(Clipboard, TextOfAnotherProgramGetsTheLineEndsOfTheDocument) {
  clipboard.set(spanOf(L"own"));
  desktop.copyElsewhere(L"a\nb\r\nc\rd");
  Document document;
  document.replace({0, 0}, {0, 0}, clipboard.get(LineEndStyle::CrLf));
  EXPECT_EQ(writtenBytes(document), "a\r\nb\r\nc\r\nd");
}

TEST_F(Clipboard, AnEmptyDesktopLeavesWhatIsHeld) {
  clipboard.set(spanOf(L"own"));
  desktop.copyElsewhere(L"");
  EXPECT_EQ(clipboard.get(LineEndStyle::Lf).text(), L"own");
}

TEST_F(Clipboard, AppendedTextGoesOnInTheLastLine) {
  clipboard.set(spanOf(L"a\nb"));
  clipboard.append(spanOf(L"c\nd"), LineEndStyle::Lf);
  EXPECT_EQ(clipboard.get(LineEndStyle::Lf).text(), L"a\nbc\nd");
  desktop.copyElsewhere(L"x");
  clipboard.append(spanOf(L"y\n"), LineEndStyle::Lf);
  EXPECT_EQ(desktop.text(), L"xy\n");
}
