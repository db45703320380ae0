#include "editor/document/document.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "document/document_support.h"
#include "document/naive_document.h"

using namespace std::string_literals;

namespace {
void expectLines(const std::string& bytes, const std::vector<std::wstring>& lines) {
  Document document;
  ASSERT_TRUE(document.load(bytes, Utf8));
  ASSERT_EQ(document.lineCount(), std::ssize(lines));
  for (size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(document.text(static_cast<int64_t>(i)), lines[i]);
  EXPECT_EQ(writtenBytes(document), bytes);
}
}  // namespace

TEST(Document, AnEmptyFileIsOneEmptyLine) {
  expectLines("", {L""});
}

TEST(Document, ALineEndAtTheEndGivesALastEmptyLine) {
  expectLines("a\n", {L"a", L""});
}

TEST(Document, ATextThatIsPutInAndTakenOutLeavesTheBytes) {
  const std::string bytes =
      "one\r\ntwo\rthr\xE9"
      "e\0four"s;
  Document document;
  ASSERT_TRUE(document.load(bytes, Utf8));
  EXPECT_EQ(document.invalidLines(), 1);
  const Document::Replaced put = document.replace({0, 1}, {2, 2}, spanOf(L"x\ny"));
  EXPECT_EQ(put.removed.text(), L"ne\ntwo\nth");
  EXPECT_EQ(put.end, (TextPlace{1, 1}));
  EXPECT_EQ(writtenBytes(document),
            "ox\nyr\xE9"
            "e\0four"s);
  document.replace({0, 1}, put.end, put.removed);
  EXPECT_EQ(writtenBytes(document), bytes);
}

namespace {
std::string everyByte() {
  std::string bytes;
  for (int first = 0; first < 256; ++first)
    for (int second = 0; second < 256; second += 5)
      bytes += {static_cast<char>(first), static_cast<char>(second)};
  return bytes;
}
}  // namespace

TEST(Document, AnyBytesAreSavedAsTheyWereInEachEncoding) {
  const std::string all = everyByte();
  for (const TextEncoding& encoding : Encodings) {
    for (size_t length = all.size() - 5; length <= all.size(); ++length) {
      Document document;
      ASSERT_TRUE(document.load(all.substr(0, length), encoding));
      ASSERT_EQ(writtenBytes(document), all.substr(0, length));
    }
  }
}

TEST(Document, AnEditKeepsAllOtherBytesInEachEncoding) {
  for (const TextEncoding& encoding : Encodings) {
    const std::string before = encoded(L"ab\r\n", encoding);
    const std::string behind = encoded(L"\ncd\r", encoding) + everyByte();
    Document document;
    ASSERT_TRUE(document.load(before + encoded(L"x", encoding) + behind, encoding));
    const int64_t lines = document.lineCount();
    document.replace({1, 0}, {1, 1}, spanOf(L"yz"));
    document.replace({0, 0}, {0, 0}, spanOf(L"-"));
    EXPECT_EQ(document.lineCount(), lines);
    EXPECT_EQ(writtenBytes(document), encoded(L"-ab\r\nyz", encoding) + behind);
  }
}

TEST(Document, BytesThatAreNoCharacterLiveOnInAnEditedLine) {
  for (const auto& [page, bytes] :
       {std::pair{1252, "\x81\x8D\x8F\x90\x9D"s}, std::pair{874, "\x82\xDB\xFF"s}}) {
    Document document;
    ASSERT_TRUE(document.load("a" + bytes + "b\n", {TextFormat::CodePage, page}));
    document.replace({0, 0}, {0, 1}, spanOf(L"-"));
    EXPECT_EQ(writtenBytes(document), "-" + bytes + "b\n");
  }
  Document document;
  ASSERT_TRUE(document.load("a\xC3\xE9\xA9 \xED\xA0\x80\n", Utf8));
  EXPECT_EQ(document.invalidLines(), 1);
  document.replace({0, 0}, {0, 1}, {});
  EXPECT_EQ(writtenBytes(document), "\xC3\xE9\xA9 \xED\xA0\x80\n");
}

TEST(Document, TheTextBeginsBehindTheMark) {
  Document document;
  ASSERT_TRUE(document.load("\xEF\xBB\xBFone\ntwo", Utf8, 3));
  EXPECT_EQ(document.text(0), L"one");
  EXPECT_EQ(writtenBytes(document), "one\ntwo");
  EXPECT_EQ(document.lineOfByte(2).line, 0);
  EXPECT_EQ(document.lineOfByte(8).line, 1);
  EXPECT_EQ(document.lineOfByte(8).bytesBefore, 1);
  EXPECT_EQ(document.lineOfByte(100).line, 1);
  EXPECT_EQ(document.lineOfByte(100).bytesBefore, 3);
}

TEST(Document, EachByteOfAFileHasItsLine) {
  std::string bytes;
  std::vector<std::pair<int64_t, int64_t>> places;
  for (int64_t line = 0; line < 300; ++line) {
    const std::string text = std::string(static_cast<size_t>(line * 7 % 30), 'x') + "\r\n";
    for (size_t i = 0; i < text.size(); ++i) places.emplace_back(line, i);
    bytes += text;
  }
  Document document;
  ASSERT_TRUE(document.load(bytes, Utf8));
  for (size_t i = 0; i < places.size(); ++i) {
    const Document::BytePlace place = document.lineOfByte(static_cast<int64_t>(i));
    ASSERT_EQ(place.line, places[i].first) << i;
    ASSERT_EQ(place.bytesBefore, places[i].second) << i;
  }
}

TEST(Document, TheFirstLineEndWithALineFeedDecidesTheStyle) {
  const struct {
    std::string bytes;
    LineEndStyle style;
  } cases[] = {{"a", LineEndStyle::Lf},
               {"\r", LineEndStyle::Lf},
               {"a\rb\r\nc\n", LineEndStyle::CrLf},
               {"a\0b\nc\r\n"s, LineEndStyle::Lf}};
  for (const auto& each : cases) {
    Document document;
    ASSERT_TRUE(document.load(each.bytes, Utf8));
    EXPECT_EQ(document.lineEndStyle(), each.style) << each.bytes;
  }
}

TEST(Document, NewLineEndsForAllAreWrittenForEachLine) {
  Document document;
  ASSERT_TRUE(document.load("a\rb\r\nc\n\0d"s, Utf8));
  document.setLineEnds(LineEndStyle::CrLf);
  EXPECT_EQ(writtenBytes(document), "a\r\nb\r\nc\r\nd");
  document.replace({3, 1}, {3, 1}, spanOf(L"\n", document.lineEndStyle()));
  EXPECT_EQ(writtenBytes(document), "a\r\nb\r\nc\r\nd\r\n");
}

TEST(Document, AQuotedCarriageReturnIsALineEndOfItsOwn) {
  Document document;
  ASSERT_TRUE(document.load("ab\n", Utf8));
  document.replace({0, 1}, {0, 1}, TextSpan::lineEnd(L"\r"));
  EXPECT_EQ(document.lineCount(), 3);
  EXPECT_EQ(writtenBytes(document), "a\rb\n");
}

TEST(Document, PastedTextIsSplitAtEachKindOfLineEnd) {
  const TextSpan span = spanOf(std::wstring(L"a\r\nb\rc\n\rd\0e", 12));
  EXPECT_EQ(span.lineEnds(), 4);
  EXPECT_EQ(span.text(), L"a\nb\nc\n\nde");
  EXPECT_EQ(span.firstLength(), 1);
  EXPECT_EQ(span.lastLength(), 2);
  EXPECT_TRUE(spanOf(L"").empty());
}

TEST(Document, LineEndsThatMeetAreStillTwoWhenTheFileIsReadAgain) {
  Document document;
  ASSERT_TRUE(document.load("a\rb\nc", Utf8));
  document.replace({1, 0}, {1, 1}, {});
  const std::string bytes = writtenBytes(document);
  ASSERT_TRUE(document.load(bytes, Utf8));
  EXPECT_EQ(document.lineCount(), 3);
  EXPECT_EQ(document.text(1), L"");
}

TEST(Document, ACharacterThatTheFormatCannotHoldIsNamedBeforeAllIsWritten) {
  Document document;
  ASSERT_TRUE(document.load("one\ntwo\nthree", Utf8));
  document.replace({1, 2}, {1, 2}, spanOf(L"\u3042"));
  const Document::Written written =
      document.write({TextFormat::CodePage, 1252}, [](std::string_view) { return 0; });
  EXPECT_TRUE(written.refused);
  EXPECT_EQ(written.place, (TextPlace{1, 2}));
  EXPECT_EQ(writtenBytes(document), "one\ntw\xE3\x81\x82o\nthree");
}

TEST(Document, RawBytesAreRefusedInWideFormats) {
  Document document;
  ASSERT_TRUE(document.load("one\nt\xFFo", Utf8));
  const Document::Written written =
      document.write({TextFormat::Utf16Le, 0}, [](std::string_view) { return 0; });
  EXPECT_TRUE(written.refused);
  EXPECT_EQ(written.place, (TextPlace{1, 1}));
}

TEST(Document, AnotherFormatGetsAllLines) {
  Document document;
  ASSERT_TRUE(document.load("a\xC3\xA4\r\n\xF0\x9F\x98\x80\nz", Utf8));
  for (const TextEncoding& encoding :
       {TextEncoding{TextFormat::Utf16Be, 0}, TextEncoding{TextFormat::Utf32Le, 0}})
    EXPECT_EQ(writtenBytes(document, encoding), encoded(L"a\u00E4\r\n\U0001F600\nz", encoding));
}

TEST(Document, AFailedWriteSaysSo) {
  Document document;
  ASSERT_TRUE(document.load(std::string(300000, 'x') + "\n", Utf8));
  EXPECT_EQ(document.write(Utf8, [](std::string_view) { return ENOSPC; }).error, ENOSPC);
  const auto stopped = document.write(
      Utf8, [](std::string_view) { return 0; }, [](int64_t) { return false; });
  EXPECT_EQ(stopped.error, ECANCELED);
}

TEST(Document, AWriteTellsHowManyLinesAreDone) {
  std::string text;
  for (int i = 0; i < 300'000; ++i) text += "a line of text\n";
  Document document;
  ASSERT_TRUE(document.load(text, Utf8));
  document.replace({100'000, 0}, {100'000, 0}, spanOf(L"x"));
  for (const TextEncoding& encoding : {Utf8, TextEncoding{TextFormat::Utf16Le, 0}}) {
    std::vector<int64_t> told;
    document.write(
        encoding, [](std::string_view) { return 0; },
        [&told](int64_t lines) { return told.push_back(lines), true; });
    EXPECT_GT(told.size(), 4u);
    EXPECT_TRUE(std::ranges::is_sorted(told));
    EXPECT_LT(told.front(), 100'000);
    EXPECT_EQ(told.back(), 300'000);
  }
}

TEST(Document, ALoadThatIsStoppedLeavesTheTextAsItWas) {
  const std::string large(20 << 20, 'x');
  const auto stop = [](int64_t) { return false; };
  Document document;
  EXPECT_FALSE(document.load(large, Utf8, 0, stop));
  EXPECT_EQ(document.lineCount(), 1);
  EXPECT_EQ(document.text(0), L"");
  ASSERT_TRUE(document.load("one\r\ntwo\r\n", Utf8));
  document.replace({0, 0}, {0, 0}, spanOf(L"x"));
  EXPECT_FALSE(document.load(large, {TextFormat::CodePage, 437}, 0, stop));
  EXPECT_EQ(writtenBytes(document, document.encoding()), "xone\r\ntwo\r\n");
  EXPECT_EQ(document.encoding(), Utf8);
  EXPECT_EQ(document.lineEndStyle(), LineEndStyle::CrLf);
}

TEST(Document, ARecodedLineMayBecomeLonger) {
  Document document;
  ASSERT_TRUE(document.load("\x82\xA0\x82\xA2\nx\n", {TextFormat::CodePage, 932}));
  EXPECT_EQ(document.lineLength(0), 2);
  document.replace({1, 0}, {1, 0}, spanOf(L"\u4E00\u00E9"));
  document.recode(850);
  EXPECT_EQ(document.lineLength(0), 4);
  EXPECT_EQ(document.encoding(), (TextEncoding{TextFormat::CodePage, 850}));
  // What the old page lacks stays; what it holds is read anew.
  EXPECT_EQ(document.text(1).back(), L'x');
  EXPECT_EQ(document.text(1)[document.text(1).size() - 2], L'\u00E9');
  EXPECT_EQ(writtenBytes(document).substr(0, 5), "\x82\xA0\x82\xA2\n");
}

TEST(Document, ATabReachesToTheNextColumnOfItsWidth) {
  Document document;
  ASSERT_TRUE(document.load("a\tb\t\tc", Utf8));
  const int64_t columns[] = {0, 1, 8, 9, 16, 24, 25};
  for (int64_t i = 0; i < 7; ++i) EXPECT_EQ(document.columnOf({0, i}, 8), columns[i]);
  EXPECT_EQ(document.widthOf(0, 4), 13);
  // Inside a tab it is the tab; behind the line its end; before column 0 its start.
  EXPECT_EQ(document.indexAt(0, 5, 8), 1);
  EXPECT_EQ(document.indexAt(0, 8, 8), 2);
  EXPECT_EQ(document.indexAt(0, 20, 8), 4);
  EXPECT_EQ(document.indexAt(0, 100, 8), 6);
  EXPECT_EQ(document.indexAt(0, 0, 8), 0);
  EXPECT_EQ(document.indexAt(0, -3, 8), 0);
}

TEST(Document, APlaceOutsideTheTextIsItsNearest) {
  Document document;
  ASSERT_TRUE(document.load("ab\nc", Utf8));
  EXPECT_EQ(document.clamped({0, 9}), (TextPlace{0, 2}));
  EXPECT_EQ(document.clamped({7, 0}), (TextPlace{1, 1}));
  EXPECT_EQ(document.clamped({-1, 4}), (TextPlace{0, 0}));
  EXPECT_EQ(document.characterAt({0, 1}), L'b');
  EXPECT_EQ(document.characterAt({0, 2}), L'\0');
}

TEST(Document, AnObserverHearsOfEachChange) {
  class Listener : public DocumentObserver {
   public:
    void onReplaced(TextPlace from, TextPlace to, const TextSpan& inserted) override {
      heard.push_back(std::to_string(from.line) + "," + std::to_string(from.index) + "-" +
                      std::to_string(to.line) + "," + std::to_string(to.index));
      texts.push_back(inserted.text());
    }
    void onLineEnds(LineEndStyle) override { heard.emplace_back("ends"); }
    std::vector<std::string> heard;
    std::vector<std::wstring> texts;
  };
  Listener listener;
  Document document;
  ASSERT_TRUE(document.load("ab\ncd", Utf8));
  document.setObserver(&listener);
  document.replace({0, 1}, {0, 1}, {});
  EXPECT_TRUE(listener.heard.empty());
  document.replace({0, 1}, {9, 9}, spanOf(L"x\ny"));
  document.setLineEnds(LineEndStyle::Lf);
  EXPECT_EQ(listener.heard, (std::vector<std::string>{"0,1-1,2", "ends"}));
  EXPECT_EQ(listener.texts[0], L"x\ny");
}

TEST(Document, ASpanOutlivesItsDocument) {
  TextSpan span;
  {
    Document document;
    ASSERT_TRUE(document.load("one\r\ntwo\nthree", Utf8));
    span = document.span({0, 1}, {2, 2});
    document.replace({0, 0}, document.end(), {});
  }
  Document other;
  other.replace({0, 0}, {0, 0}, span);
  EXPECT_EQ(writtenBytes(other), "ne\r\ntwo\nth");
}

TEST(Document, AStoredSpanIsTheSameAndAnyOtherBytesAreSomeText) {
  Document document;
  ASSERT_TRUE(
      document.load("a\xFF"
                    "b\r\nc\0d\re"s,
                    Utf8));
  document.replace({1, 0}, {1, 0}, spanOf(L"\u3042"));
  const std::string stored = document.span({0, 1}, document.end()).stored();
  Document other;
  other.replace({0, 0}, {0, 0}, TextSpan::fromStored(stored));
  EXPECT_EQ(writtenBytes(other),
            "\xFF"
            "b\r\n\xE3\x81\x82"
            "c\0d\re"s);
  for (size_t length = 0; length < stored.size(); ++length)
    TextSpan::fromStored(stored.substr(0, length)).text();
  for (size_t i = 0; i < stored.size(); ++i) {
    std::string damaged = stored;
    damaged[i] = static_cast<char>(damaged[i] ^ 0xA5);
    TextSpan::fromStored(damaged).text();
  }
}

TEST(Document, LineEndsAreFoundWhereverTheyStand) {
  std::mt19937 random(3);
  for (int round = 0; round < 300; ++round) {
    const unsigned rarity = 1 + random() % 40;
    std::string bytes;
    for (unsigned length = random() % 700; length > 0; --length)
      bytes += random() % rarity == 0 ? "\r\n\0"[random() % 3] : 'x';
    Document document;
    NaiveDocument naive;
    ASSERT_TRUE(document.load(bytes, Utf8));
    naive.load(bytes, Utf8);
    ASSERT_EQ(document.lineCount(), std::ssize(naive.lines));
    for (int64_t line = 0; line < document.lineCount(); ++line)
      ASSERT_EQ(document.text(line), naive.lines[static_cast<size_t>(line)].text);
    ASSERT_EQ(document.lineEndStyle(), naive.style);
    ASSERT_EQ(writtenBytes(document), bytes);
  }
}
