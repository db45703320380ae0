#include "editor/document/long_line.h"

#include <gtest/gtest.h>

#include <random>

#include "document/document_support.h"
#include "document/naive_document.h"
#include "editor/document/document_search.h"
#include "editor/document/text_rules.h"

namespace {
// A line of about 200,000 bytes with characters of each length, tabs and bytes that are none.
std::string longBytes(const TextEncoding& encoding, std::mt19937& random) {
  std::string bytes;
  while (bytes.size() < 200000) {
    static constexpr wchar_t Characters[] = L"ab\t \u00E9\u20AC\U0001F600";
    const wchar_t c = Characters[random() % 7];
    if (encodeText({&c, 1}, encoding, bytes) != AllEncoded) bytes += 'x';
    if (unitBytes(encoding.format) == 1 && random() % 50 == 0)
      bytes.append(1 + random() % 6, static_cast<char>(0x80 + random() % 128));
  }
  return bytes;
}

TextRun runOf(const std::string& bytes, const TextEncoding& encoding) {
  auto* block = new BytesBlock;
  block->bytes = bytes;
  TextRun run;
  run.block = SharedBlock(block);
  run.length = bytes.size();
  run.storage = {encoding, false};
  return run;
}
}  // namespace

TEST(LongLine, SaysWhatAWholeLineWouldSay) {
  std::mt19937 random(11);
  for (const TextEncoding& encoding :
       {Utf8, TextEncoding{TextFormat::CodePage, 1252}, TextEncoding{TextFormat::CodePage, 932},
        TextEncoding{TextFormat::Utf16Le, 0}, TextEncoding{TextFormat::Utf16Be, 0},
        TextEncoding{TextFormat::Utf32Le, 0}}) {
    const std::string bytes = longBytes(encoding, random);
    std::wstring whole;
    decodeText(bytes, encoding, whole);
    const auto length = static_cast<int64_t>(whole.size());
    LongLine line(runOf(bytes, encoding));
    for (int round = 0; round < 300; ++round) {
      const auto index = static_cast<int64_t>(random() % (whole.size() + 1));
      const auto count = static_cast<int64_t>(random() % 9000);
      ASSERT_EQ(line.slice(index, count),
                whole.substr(static_cast<size_t>(index), static_cast<size_t>(count)));
      const int tabWidth = 1 + round / 100 * 3;
      const int64_t column = line.columnOf(index, tabWidth);
      ASSERT_EQ(column, columnBehind(std::wstring_view(whole).substr(0, static_cast<size_t>(index)),
                                     0, tabWidth));
      const int64_t target = column + static_cast<int64_t>(random() % 3);
      ASSERT_EQ(line.indexAt(target, tabWidth),
                static_cast<int64_t>(charactersTo(whole, 0, target, tabWidth)));
    }
    ASSERT_EQ(line.length(), length);
    ASSERT_EQ(line.slice(length, 5), L"");
  }
}

TEST(LongLine, AnEditedLongLineKeepsItsColumns) {
  std::mt19937 random(12);
  const std::string bytes = longBytes(Utf8, random);
  std::wstring whole;
  decodeText(bytes, Utf8, whole);
  Document document;
  ASSERT_TRUE(document.load("first\n" + bytes + "\nlast", Utf8));
  for (int round = 0; round < 200; ++round) {
    const size_t at = random() % whole.size();
    const size_t count = random() % 20;
    const std::wstring put(random() % 3, L'\t');
    const auto index = static_cast<int64_t>(at);
    document.replace({1, index}, {1, index + static_cast<int64_t>(count)}, spanOf(put));
    whole.replace(at, count, put);
    const auto looked = static_cast<int64_t>(random() % whole.size());
    ASSERT_EQ(document.columnOf({1, looked}, 4),
              columnBehind(std::wstring_view(whole).substr(0, static_cast<size_t>(looked)), 0, 4));
    ASSERT_EQ(document.slice(1, looked, 30), whole.substr(static_cast<size_t>(looked), 30));
    if (round % 50 == 0) document.replace({0, 0}, {0, 1}, spanOf(L"F"));
  }
  ASSERT_EQ(document.text(1), whole);
  ASSERT_EQ(document.lineLength(1), static_cast<int64_t>(whole.size()));
}

namespace {
// Text to be put in: mostly short, sometimes long, sometimes with line ends or bytes that are none.
std::wstring someText(const std::wstring& source, std::mt19937& random) {
  const size_t length = random() % 8 == 0 ? random() % 30000 : random() % 4;
  std::wstring text = source.substr(random() % (source.size() - length), length);
  if (random() % 10 == 0) text += L'\n';
  return text;
}
}  // namespace

TEST(LongLine, EditsGiveWhatAPlainListOfLinesGivesInEachEncoding) {
  std::mt19937 random(13);
  for (const TextEncoding& encoding :
       {Utf8, TextEncoding{TextFormat::CodePage, 1252}, TextEncoding{TextFormat::CodePage, 932},
        TextEncoding{TextFormat::Utf16Le, 0}, TextEncoding{TextFormat::Utf32Be, 0}}) {
    const std::string bytes = longBytes(encoding, random);
    const std::wstring source = decoded(bytes, encoding);
    Document document;
    NaiveDocument naive;
    EditHistory history;
    ASSERT_TRUE(document.load(bytes, encoding));
    naive.load(bytes, encoding);
    for (int round = 0; round < 150; ++round) {
      TextPlace from{static_cast<int64_t>(random() % naive.lines.size()), 0};
      const std::wstring& line = naive.lines[static_cast<size_t>(from.line)].text;
      from.index = static_cast<int64_t>(random() % (line.size() + 1));
      TextPlace to{from.line, from.index + static_cast<int64_t>(random() % 9)};
      if (random() % 6 == 0) to = {from.line + 1, static_cast<int64_t>(random() % 5000)};
      from = document.clamped(from);
      to = std::max(document.clamped(to), from);
      const std::wstring text = someText(source, random);
      const Document::Replaced replaced = document.replace(from, to, spanOf(text));
      ASSERT_EQ(naive.replace(from, to, naiveText(text, LineEndStyle::Lf)), replaced.end);
      history.push({replaced.removed, from, replaced.end, from, replaced.end});
      ASSERT_EQ(document.lineCount(), std::ssize(naive.lines));
      for (const int64_t looked : {from.line, replaced.end.line}) {
        ASSERT_EQ(document.text(looked), naive.lines[static_cast<size_t>(looked)].text);
      }
      if (round % 10 == 0) {
        ASSERT_EQ(writtenBytes(document), naive.bytes(encoding));
      }
    }
    ASSERT_EQ(writtenBytes(document), naive.bytes(encoding));
    TextPlace cursor;
    while (history.undoCommand(document, cursor) == UndoOutcome::Done) {
    }
    ASSERT_EQ(writtenBytes(document), bytes);
  }
}

TEST(LongLine, WordsAndBracketsAreFoundInOneOfAnyLength) {
  const std::string blanks(300000, ' ');
  Document document;
  ASSERT_TRUE(document.load("(one" + blanks + "two)", Utf8));
  EXPECT_EQ(wordRightPlace(document, {0, 4}, WordRight::NextStart), (TextPlace{0, 300004}));
  EXPECT_EQ(wordLeftPlace(document, {0, 300004}), (TextPlace{0, 1}));
  EXPECT_EQ(matchingBracket(document, {0, 0}), (TextPlace{0, 300007}));
  EXPECT_EQ(matchingBracket(document, {0, 300007}), (TextPlace{0, 0}));
}

TEST(LongLine, IsSearchedAStretchAtATime) {
  for (const int64_t at : {65530, 65535, 65536, 65537, 131071, 131072, 199990}) {
    std::string bytes(200000, '-');
    bytes.replace(static_cast<size_t>(at), 6, "needle");
    Document document;
    ASSERT_TRUE(document.load("x\n" + bytes + "\n", Utf8));
    for (const SearchWords words : {SearchWords::Any, SearchWords::WholeOnly}) {
      TextPlace place;
      const SearchQuery forward{L"NEEDLE", SearchCase::Ignored, SearchDirection::Forward, words};
      ASSERT_EQ(findText(document, forward, place), SearchEnd::Found);
      EXPECT_EQ(place, (TextPlace{1, at}));
      place = document.end();
      const SearchQuery backward{L"needle", SearchCase::Respected, SearchDirection::Backward,
                                 words};
      ASSERT_EQ(findText(document, backward, place), SearchEnd::Found);
      EXPECT_EQ(place, (TextPlace{1, at}));
    }
  }
}

TEST(LongLine, IsNotReadToBeChangedWithOthers) {
  Document document;
  const std::string bytes = std::string(300000, 'x') + "\na\n" + std::string(300000, 'y');
  ASSERT_TRUE(document.load(bytes, Utf8));
  int64_t read = 0;
  const TextSpan changed =
      document.span({0, 0}, document.end()).changed(299999, [&read](const std::wstring& line) {
        read += std::ssize(line);
        return std::optional<std::wstring>(L"b" + line);
      });
  EXPECT_EQ(read, 1);
  document.replace({0, 0}, document.end(), changed);
  EXPECT_EQ(writtenBytes(document), std::string(300000, 'x') + "\nba\n" + std::string(300000, 'y'));
}

TEST(LongLine, KeepsItsIndentWhileOthersMove) {
  Document document;
  const std::string bytes = std::string(300000, ' ') + "x\na\n";
  ASSERT_TRUE(document.load(bytes, Utf8));
  for (const int64_t delta : {100, -100}) {
    EXPECT_FALSE(indentChange(document, 0, 1, delta, 8)) << delta;
  }
  const auto change = indentChange(document, 0, 2, 1, 8);
  ASSERT_TRUE(change);
  document.replace(change->from, change->to, change->text);
  EXPECT_EQ(writtenBytes(document), std::string(300000, ' ') + "x\n a\n");
}

TEST(LongLine, TakesCutsAndReplacementsButNoTyping) {
  Document document;
  ASSERT_TRUE(document.load(std::string(70000, 'x') + "\n", Utf8));
  EXPECT_FALSE(fitsLine(document, {0, 5}, {0, 5}, spanOf(L"y")));
  document.replace({0, 10}, {0, 20}, {});
  EXPECT_EQ(document.lineLength(0), 69990);
  EditHistory history;
  EXPECT_EQ(replaceAll(document, history, {L"x"}, spanOf(L"yy"), {0, 0}, -1).count, 69990);
  EXPECT_EQ(document.lineLength(0), 139980);
}
