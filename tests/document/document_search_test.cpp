#include "editor/document/document_search.h"

#include <gtest/gtest.h>

#include <random>

#include "document/document_support.h"

namespace {
class DocumentSearch : public testing::Test {
 protected:
  void load(const std::string& bytes, const TextEncoding& encoding = Utf8) {
    ASSERT_TRUE(document.load(bytes, encoding));
  }
  // "line,index", or what the search ended with.
  std::string find(TextPlace place, SearchQuery query) {
    const SearchEnd end = findText(document, query, place);
    if (end == SearchEnd::NotFound) return "none";
    if (end == SearchEnd::Stopped) return "stopped";
    return std::to_string(place.line) + "," + std::to_string(place.index);
  }

  Document document;
  EditHistory history;
};

constexpr SearchQuery backward(const wchar_t* text) {
  return {text, SearchCase::Ignored, SearchDirection::Backward, SearchWords::Any};
}
constexpr SearchQuery exactly(const wchar_t* text) {
  return {text, SearchCase::Respected, SearchDirection::Forward, SearchWords::Any};
}
constexpr SearchQuery word(const wchar_t* text) {
  return {text, SearchCase::Ignored, SearchDirection::Forward, SearchWords::WholeOnly};
}
}  // namespace

TEST_F(DocumentSearch, TheCaseCountsOnlyWhenItIsAskedFor) {
  load("abc\nxyz AbC\n\xC3\x84hre");
  EXPECT_EQ(find({0, 1}, {L"aBc"}), "1,4");
  EXPECT_EQ(find({0, 0}, exactly(L"AbC")), "1,4");
  EXPECT_EQ(find({0, 0}, exactly(L"aBc")), "none");
  EXPECT_EQ(find({0, 0}, {L"\u00E4H"}), "2,0");
}

TEST_F(DocumentSearch, AnUnderlineBelongsToAWord) {
  load("a_b _a a1 xa a");
  EXPECT_EQ(find({0, 0}, word(L"a")), "0,13");
  EXPECT_EQ(find({0, 0}, word(L"a_b")), "0,0");
}

TEST_F(DocumentSearch, ALineShorterThanTheTextIsSkipped) {
  load("ab\nabc\nab");
  EXPECT_EQ(find({0, 0}, {L"abc"}), "1,0");
  EXPECT_EQ(find({2, 1}, backward(L"abc")), "1,0");
}

TEST_F(DocumentSearch, BackwardFromTheStartOfALineGoesOnInTheLineAbove) {
  load("x1 x2\nx3");
  EXPECT_EQ(find(stepOn({1, 0}, SearchDirection::Backward), backward(L"x")), "0,3");
  EXPECT_EQ(find(stepOn({0, 3}, SearchDirection::Backward), backward(L"x")), "0,0");
  EXPECT_EQ(find(stepOn({0, 0}, SearchDirection::Backward), backward(L"x")), "none");
}

TEST_F(DocumentSearch, BackwardNeverReadsBehindTheLine) {
  load("abab");
  EXPECT_EQ(find({0, 4}, backward(L"abab")), "0,0");
  EXPECT_EQ(find({0, 4}, backward(L"ab")), "0,2");
}

TEST_F(DocumentSearch, ReplacingAllLeavesOneStepForEachHit) {
  load("one two one\none");
  const ReplaceAllResult result =
      replaceAll(document, history, {L"one"}, spanOf(L"ones"), {0, 0}, history.newReplaceAll());
  EXPECT_EQ(result.count, 3);
  EXPECT_EQ(result.end, SearchEnd::NotFound);
  EXPECT_EQ(writtenBytes(document), "ones two ones\nones");
  EXPECT_EQ(history.undo.size(), 3);
  TextPlace cursor = history.undo.top().after;
  EXPECT_EQ(history.undoStep(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(writtenBytes(document), "ones two ones\none");
  EXPECT_EQ(history.redoStep(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(history.undoCommand(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(writtenBytes(document), "one two one\none");
  EXPECT_EQ(history.redoCommand(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(writtenBytes(document), "ones two ones\nones");
}

TEST_F(DocumentSearch, AHitAtAPlaceIsSeenWithoutASearch) {
  load("x word-a aword word");
  EXPECT_TRUE(isHit(document, {L"WORD"}, {0, 2}));
  EXPECT_FALSE(isHit(document, {L"WORD"}, {0, 3}));
  EXPECT_FALSE(isHit(document, exactly(L"WORD"), {0, 2}));
  EXPECT_TRUE(isHit(document, word(L"word"), {0, 2}));
  EXPECT_FALSE(isHit(document, word(L"word"), {0, 10}));
  EXPECT_TRUE(isHit(document, word(L"word"), {0, 15}));
  EXPECT_FALSE(isHit(document, {L"word"}, {0, 18}));
  EXPECT_FALSE(isHit(document, {L""}, {0, 2}));
}

TEST_F(DocumentSearch, AReplacementIsNotSearchedAgain) {
  load("aaa");
  EXPECT_EQ(replaceAll(document, history, {L"a"}, spanOf(L"aa"), {0, 0}, -1).count, 3);
  EXPECT_EQ(writtenBytes(document), "aaaaaa");
}

TEST_F(DocumentSearch, ALongSearchCanBeLeft) {
  load(std::string(1 << 20, 'x') + "\n" + std::string(1 << 20, 'x'));
  TextPlace place;
  EXPECT_EQ(findText(document, {L"y"}, place, [] { return true; }), SearchEnd::Stopped);
  EXPECT_EQ(place, TextPlace{});
}

namespace {
// Hit by hit, as a user would replace them.
int64_t replaceOneByOne(Document& document, EditHistory& history, const SearchQuery& query,
                        const TextSpan& replacement, TextPlace place = {}) {
  int64_t count = 0;
  for (; findText(document, query, place) == SearchEnd::Found; ++count)
    place = replaceHit(document, history, query, replacement, place);
  return count;
}
}  // namespace

TEST_F(DocumentSearch, ReplacingAllIsReplacingOneAfterTheOther) {
  const wchar_t* const texts[] = {L"a", L"-a-", L"aa", L"a-", L"-"};
  const wchar_t* const replacements[] = {L"", L"x", L"-", L"aa", L"a\nab"};
  std::mt19937 random(7);
  int64_t replaced = 0;
  for (int round = 0; round < 500; ++round) {
    std::string bytes;
    for (unsigned i = random() % 40; i > 0; --i) bytes += "aaA--- \n"[random() % 8];
    SearchQuery query{texts[random() % 5]};
    query.letters = random() % 2 == 0 ? SearchCase::Ignored : SearchCase::Respected;
    query.words = random() % 2 == 0 ? SearchWords::Any : SearchWords::WholeOnly;
    const TextSpan replacement = spanOf(replacements[random() % 5]);
    load(bytes);
    TextPlace start;
    if (random() % 3 == 0) {
      query.direction = SearchDirection::Backward;
      start = document.end();
    }
    Document other;
    ASSERT_TRUE(other.load(bytes, Utf8));
    EditHistory otherHistory;
    const int64_t count = replaceOneByOne(other, otherHistory, query, replacement, start);
    EditHistory own;
    ASSERT_EQ(replaceAll(document, own, query, replacement, start, -1).count, count) << bytes;
    ASSERT_EQ(writtenBytes(document), writtenBytes(other)) << bytes;
    ASSERT_EQ(own.undo.size(), count);
    TextPlace cursor;
    own.undoCommand(document, cursor);
    ASSERT_EQ(writtenBytes(document), bytes);
    replaced += count;
  }
  EXPECT_GT(replaced, 100);
}

TEST_F(DocumentSearch, ReplacingAllInALongLineIsReplacingOneAfterTheOther) {
  std::mt19937 random(8);
  for (const wchar_t* replacement : {L"", L"x", L"needle"}) {
    for (const SearchWords words : {SearchWords::Any, SearchWords::WholeOnly}) {
      std::string bytes = "needle\n";
      while (bytes.size() < 300000) bytes.append(random() % 9000, " -\t"[random() % 3]) += "needle";
      // One that reaches over the edge of what is looked through at once, wherever that begins.
      for (const size_t at : {65530, 65535, 65537, 131070, 131080}) bytes.replace(at, 6, "needle");
      load(bytes + "\nneedle");
      Document other;
      ASSERT_TRUE(other.load(bytes + "\nneedle", Utf8));
      SearchQuery query{L"needle"};
      query.words = words;
      EditHistory otherHistory;
      const int64_t count = replaceOneByOne(other, otherHistory, query, spanOf(replacement));
      EXPECT_GT(count, 30);
      EXPECT_EQ(replaceAll(document, history, query, spanOf(replacement), {0, 0}, -1).count, count);
      EXPECT_EQ(writtenBytes(document), writtenBytes(other));
      TextPlace cursor;
      EXPECT_EQ(history.undoCommand(document, cursor), UndoOutcome::Done);
      EXPECT_EQ(writtenBytes(document), bytes + "\nneedle");
    }
  }
}

namespace {
// Makes in another document what it is told of.
class Follower : public DocumentObserver {
 public:
  explicit Follower(Document& document) : document_(document) {}
  void onReplaced(TextPlace from, TextPlace to, const TextSpan& inserted) override {
    document_.replace(from, to, TextSpan::fromStored(inserted.stored()));
  }
  void onLineEnds(LineEndStyle style) override { document_.setLineEnds(style); }

 private:
  Document& document_;
};
}  // namespace

TEST_F(DocumentSearch, WhoWatchesTheTextIsToldOfEachReplacedLine) {
  std::string bytes;
  for (int i = 0; i < 10000; ++i) bytes += i % 3 == 0 ? "a needle\r\n" : i % 3 == 1 ? "\n" : "x\r";
  bytes += std::string(100000, '-') + "needle\nneedle";
  load(bytes);
  Document other;
  ASSERT_TRUE(other.load(bytes, Utf8));
  Follower follower(other);
  document.setObserver(&follower);
  EXPECT_EQ(replaceAll(document, history, {L"needle"}, spanOf(L""), {0, 0}, -1).count, 3336);
  document.setObserver(nullptr);
  EXPECT_EQ(writtenBytes(document), writtenBytes(other));
  EXPECT_EQ(document.lineCount(), other.lineCount());
}

TEST_F(DocumentSearch, WhatWasReplacedBeforeAStopStaysReplaced) {
  std::string bytes;
  for (int i = 0; i < 2000; ++i) bytes += "needle\n";
  load(bytes);
  const ReplaceAllResult result = replaceAll(document, history, {L"needle"}, spanOf(L"thread"),
                                             {0, 0}, -1, [] { return true; });
  EXPECT_EQ(result.end, SearchEnd::Stopped);
  EXPECT_GT(result.count, 0);
  EXPECT_EQ(document.text(result.count - 1), L"thread");
  EXPECT_EQ(document.text(result.count), L"needle");
  EXPECT_EQ(history.undo.size(), result.count);
  TextPlace cursor;
  history.undoCommand(document, cursor);
  EXPECT_EQ(writtenBytes(document), bytes);
}

TEST_F(DocumentSearch, CharactersThatFoldAlikeAreFoundInEachEncoding) {
  const struct {
    const wchar_t* line;
    const wchar_t* text;
  } cases[] = {
      {L"..\u0434\u041E\u043C..", L"\u0414\u043E\u041C"},  // Cyrillic: two bytes each
      {L"..mi\u017Fs..", L"MISS"},                         // a long s, which has two
      {L"..\u03C3\u03C2..", L"\u03A3\u03A3"},              // both small sigmas
      {L"..na\u00EFve..", L"NA\u00CFVE"},
  };
  int found = 0;
  for (const auto& each : cases) {
    for (const TextEncoding& encoding :
         {Utf8, TextEncoding{TextFormat::CodePage, 1251}, TextEncoding{TextFormat::CodePage, 1252},
          TextEncoding{TextFormat::Utf16Le, 0}, TextEncoding{TextFormat::Utf32Be, 0}}) {
      std::string bytes;
      if (encodeText(std::wstring(L"first\n") + each.line + L"\nlast", encoding, bytes) !=
          AllEncoded)
        continue;
      load(bytes, encoding);
      EXPECT_EQ(find({0, 0}, {each.text}), "1,2") << each.text;
      EXPECT_EQ(find({2, 0}, backward(each.text)), "1,2") << each.text;
      ++found;
    }
  }
  EXPECT_GE(found, 14);
}
