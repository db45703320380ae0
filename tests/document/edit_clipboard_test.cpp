#include "editor/document/edit_clipboard.h"

#include <gtest/gtest.h>

#include <thread>

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

TEST_F(Clipboard, AnotherThreadReadsWhatWasCopiedWhileTheTextChanges) {
  std::string bytes;
  for (int i = 0; i < 500; ++i) bytes += "line " + std::to_string(i) + "\r\n";
  Document document;
  ASSERT_TRUE(document.load(bytes, Utf8));
  for (int64_t line = 0; line < 400; line += 7)
    document.replace({line, 0}, {line, 1}, spanOf(L"L"));
  clipboard.set(document.span({0, 0}, document.end()));
  const std::wstring wanted = desktop.text();
  std::vector<std::wstring> seen;
  std::thread reader([&] {
    for (int i = 0; i < 20; ++i) seen.push_back(desktop.text());
  });
  for (int64_t i = 0; i < 2000; ++i) {
    const int64_t line = i * 37 % document.lineCount();
    document.replace({line, 0}, {line, 0}, spanOf(i % 3 == 0 ? L"x\n" : L"y"));
  }
  document.replace({0, 0}, document.end(), {});
  reader.join();
  EXPECT_EQ(seen, std::vector<std::wstring>(20, wanted));
}

TEST_F(Clipboard, TextOfACodePageIsMadeReadyWhenItIsCopied) {
  Document document;
  ASSERT_TRUE(document.load("a\x84\nb", {TextFormat::CodePage, 850}));
  EXPECT_TRUE(document.span({0, 0}, document.end()).needsCodePage());
  EXPECT_FALSE(spanOf(L"a\nb").needsCodePage());
  clipboard.set(document.span({0, 0}, document.end()));
  document.recode(1252);
  EXPECT_EQ(desktop.text(), L"a\u00E4\nb");
}
