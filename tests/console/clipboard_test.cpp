#include "console/clipboard.h"

#include <atomic>
#include <thread>

#include "foundation/utf8.h"
#include "support/console_test.h"
#include "support/x_keys.h"

namespace {
using Clipboard = RealKeysTest;

std::string utf8(const Westring& text) {
  return std::string(toUtf8(text).data());
}

TEST_F(Clipboard, GivesBackItsOwnText) {
  clipboardSetText(Westring(L"one \x00E4 \x4E2D"));
  EXPECT_EQ(utf8(clipboardGetText()), "one \xC3\xA4 \xE4\xB8\xAD");
}

TEST_F(Clipboard, OffersItsTextToOtherPrograms) {
  clipboardSetText(Westring(L"for others \x00E4"));
  EXPECT_EQ(XKeys::get().readClipboard(), "for others \xC3\xA4");
}

TEST_F(Clipboard, AnOfferedTextIsMadeWhenAnotherProgramAsksForIt) {
  std::atomic<int> made{0};
  console->offerClipboardText([&made] {
    ++made;
    return std::string("made late \xC3\xA4");
  });
  EXPECT_TRUE(console->isClipboardOffered());
  EXPECT_EQ(made, 0);
  EXPECT_EQ(XKeys::get().readClipboard(), "made late \xC3\xA4");
  EXPECT_GE(made, 1);
  EXPECT_TRUE(console->isClipboardOffered());
  clipboardSetText(Westring(L"another"));
  EXPECT_FALSE(console->isClipboardOffered());
}

TEST_F(Clipboard, AnOfferEndsWhenAnotherProgramTakesTheClipboard) {
  console->offerClipboardText([] { return std::string("ours"); });
  console->offerClipboardText([] { return std::string("ours again"); });
  EXPECT_TRUE(console->isClipboardOffered());
  XKeys::get();
  std::thread owner([] { XKeys::get().ownClipboard("theirs", PatienceMs); });
  EXPECT_TRUE(waitUntil([] { return !console->isClipboardOffered(); }));
  EXPECT_TRUE(waitUntil([] { return utf8(clipboardGetText()) == "theirs"; }));
  owner.join();
}

TEST_F(Clipboard, BytesComeThroughTheCodePage) {
  clipboardSetText("\x84");
  EXPECT_EQ(utf8(clipboardGetText()), "\xC3\xA4");
}

TEST_F(Clipboard, TakesTheTextOfAnotherProgram) {
  XKeys::get();
  std::thread owner([] { XKeys::get().ownClipboard("from \xE4\xB8\xAD outside", PatienceMs); });
  EXPECT_TRUE(waitUntil([] { return utf8(clipboardGetText()) == "from \xE4\xB8\xAD outside"; }));
  owner.join();
}

TEST_F(Clipboard, WithNobodyOwningItTheTextIsEmpty) {
  EXPECT_EQ(utf8(clipboardGetText()), "");
}

TEST_F(Clipboard, TextThatIsNoUnicodeGoesOutAsValidUtf8) {
  const wchar_t name[] = {L'a', wchar_t(-1), wchar_t(0xD800), L'b', 0};
  clipboardSetText(Westring(name));
  EXPECT_EQ(XKeys::get().readClipboard(),
            "a\xC3\xBF\xE2\x8C\x82"
            "b");
}

TEST_F(Clipboard, LinesAreJoinedWithNewlinesAndSplitAgain) {
  FnStringStore lines;
  lines.add(new Westring(L"first"));
  lines.add(new Westring(L""));
  lines.add(new Westring(L"third"));
  clipboardSetLines(lines);
  EXPECT_EQ(utf8(clipboardGetText()), "first\n\nthird");
  FnStringStore back;
  back.add(new Westring(L"old"));
  clipboardGetLines(back);
  ASSERT_EQ(back.count(), 3);
  EXPECT_EQ(utf8(*back.peek(0)), "first");
  EXPECT_EQ(utf8(*back.peek(1)), "");
  EXPECT_EQ(utf8(*back.peek(2)), "third");
}
}  // namespace
