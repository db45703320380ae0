#include "viewer/file_search.h"

#include <random>

#include "foundation/fold.h"
#include "support/temp_dir.h"
#include "viewer/random_text.h"
#include "viewer/read_hook.h"

namespace {

SearchValues valuesOf(const wchar_t* text) {
  SearchValues values;
  values.text = text;
  return values;
}

// A file on the disk with those bytes.
struct Searched {
  explicit Searched(const std::string& bytes, const TextEncoding& encoding = {TextFormat::Utf8},
                    const ViewLimits& limits = {})
      : file(limits) {
    dir.write("file", bytes);
    EXPECT_EQ(file.open(dir.wide("file"), encoding), 0);
  }
  int64_t find(const SearchValues& values, int64_t from) {
    const SearchHit hit = searchFile(file, values, from, never);
    return hit.result == SearchHit::Result::Found ? hit.position : -1;
  }
  std::vector<int64_t> all(SearchValues values) {
    std::vector<int64_t> hits;
    int64_t from = values.reverse ? file.size() : 0;
    for (;;) {
      const SearchHit hit = searchFile(file, values, from, never);
      if (hit.result != SearchHit::Result::Found) return hits;
      hits.push_back(hit.position);
      from = values.reverse ? hit.end() - 1 : hit.position + 1;
    }
  }

  TempDir dir;
  ViewedFile file;
};

std::string encoded(const std::wstring& text, const TextEncoding& encoding) {
  std::string bytes;
  EXPECT_EQ(encodeText(text, encoding, bytes), AllEncoded);
  return bytes;
}

// All hits by looking at every place of the decoded text: positions in bytes.
std::vector<int64_t> naiveHits(const std::wstring& text, const TextEncoding& encoding,
                               const SearchValues& values) {
  std::vector<int64_t> hits;
  const std::wstring wanted = values.text.data();
  const auto same = [&](wchar_t a, wchar_t b) {
    return values.caseSensitive ? a == b : foldChar(a) == foldChar(b);
  };
  const auto isWord = [](wchar_t c) {
    return c == L'_' || (c > 0 && iswalnum(static_cast<wint_t>(c)));
  };
  int64_t position = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    bool found = i + wanted.size() <= text.size();
    for (size_t j = 0; found && j < wanted.size(); ++j) found = same(text[i + j], wanted[j]);
    if (found && values.wholeWord) {
      found = !(i > 0 && isWord(text[i - 1])) &&
              !(i + wanted.size() < text.size() && isWord(text[i + wanted.size()]));
    }
    if (found) hits.push_back(position);
    std::string bytes;
    encodeText(text.substr(i, 1), encoding, bytes);
    position += static_cast<int64_t>(bytes.size());
  }
  return hits;
}

}  // namespace

TEST(FileSearch, FindsForwardFromAPlaceAndBackwardToOne) {
  Searched searched("one two one two one");
  SearchValues values = valuesOf(L"one");
  EXPECT_EQ(searched.find(values, 0), 0) << "a hit at the place itself counts";
  EXPECT_EQ(searched.find(values, 1), 8);
  EXPECT_EQ(searched.find(values, 16), 16);
  EXPECT_EQ(searched.find(values, 17), -1);
  values.reverse = true;
  EXPECT_EQ(searched.find(values, 19), 16);
  EXPECT_EQ(searched.find(values, 18), 8) << "it ends behind the place";
  EXPECT_EQ(searched.find(values, 8), 0);
  EXPECT_EQ(searched.find(values, 2), -1);
}

TEST(FileSearch, AnEmptyTextAndOneThatTheFormatLacksFindNothing) {
  Searched searched("abc");
  EXPECT_EQ(searched.find(valuesOf(L""), 0), -1);
  searched.file.setEncoding({TextFormat::CodePage, 437});
  const ReadHook hook;
  EXPECT_EQ(searched.find(valuesOf(L"a\u20AC"), 0), -1);
  EXPECT_EQ(hook.reads(), 0);
}

TEST(FileSearch, FoldsByCharactersInEveryFormat) {
  const std::wstring text = L"stra\u00DFe \u00C9T\u00C9 \u017Fein \u0130 \u0131x \u2C65\u023A.";
  for (int format = 0; format <= static_cast<int>(TextFormat::Utf8); ++format) {
    const TextEncoding encoding{static_cast<TextFormat>(format)};
    Searched searched(encoded(text, encoding), encoding);
    for (const wchar_t* const wanted : {L"\u00E9t\u00E9", L"SEIN", L"IX", L"\u023A\u2C65",
                                        L"\u2C65", L"S", L"i", L"\u017F", L"e"}) {
      for (const bool exact : {false, true}) {
        SearchValues values = valuesOf(wanted);
        values.caseSensitive = exact;
        EXPECT_EQ(searched.all(values), naiveHits(text, encoding, values)) << format << exact;
      }
    }
  }
}

TEST(FileSearch, WordsEndAtAccentedLettersByCharacters) {
  const TextEncoding encoding{TextFormat::Utf8};
  const std::wstring text = L"caf\u00E9 caf caf_ _caf 1caf caf,caf";
  Searched searched(encoded(text, encoding));
  SearchValues values = valuesOf(L"caf");
  values.wholeWord = true;
  EXPECT_EQ(searched.all(values), (std::vector<int64_t>{6, 25, 29}));
}

TEST(FileSearch, ACodePageFoldsAndTestsWordsByBytes) {
  Searched searched("\xC9T\xC9 \xE9t\xE9x \xE9t\xE9\xE9", {TextFormat::CodePage, 1252});
  SearchValues values = valuesOf(L"\u00E9t\u00E9");
  EXPECT_EQ(searched.all(values), (std::vector<int64_t>{0, 4, 9}));
  values.wholeWord = true;
  EXPECT_EQ(searched.all(values), (std::vector<int64_t>{0, 9})) << "an accented byte is no letter";
  values.caseSensitive = true;
  EXPECT_EQ(searched.all(values), (std::vector<int64_t>{9}));
}

TEST(FileSearch, HitsLieOnUnits) {
  // U+6100 U+0062 in little-endian order holds 61 00 62 at an odd place.
  Searched searched(std::string("\x00\x61\x00\x62\x00\x61\x00", 7) + '\x00', {TextFormat::Utf16Be});
  EXPECT_EQ(searched.find(valuesOf(L"a"), 0), 0);
  Searched odd(std::string("\x00\x61\x00\x62", 4), {TextFormat::Utf16Le});
  EXPECT_EQ(odd.find(valuesOf(L"a"), 0), -1);
}

TEST(FileSearch, SurrogatePairsAreFound) {
  const TextEncoding encoding{TextFormat::Utf16Be};
  const std::wstring text = L"x\U0001F600y\U0001F601";
  Searched searched(encoded(text, encoding), encoding);
  EXPECT_EQ(searched.find(valuesOf(L"\U0001F601"), 0), 8);
}

TEST(FileSearch, NeverLeavesTheFile) {
  Searched searched("ab");
  EXPECT_EQ(searched.find(valuesOf(L"abc"), 0), -1);
  EXPECT_EQ(searched.find(valuesOf(L"b"), 5), -1);
  SearchValues back = valuesOf(L"ab");
  back.reverse = true;
  EXPECT_EQ(searched.find(back, 99), 0);
  Searched empty("");
  EXPECT_EQ(empty.find(valuesOf(L"a"), 0), -1);
  EXPECT_EQ(empty.find(back, 0), -1);
}

TEST(FileSearch, FindsWhatTheNaiveSearchFindsWhereverBlocksEnd) {
  const unsigned seed = 5;
  std::mt19937 random(seed);
  const wchar_t letters[] = L"aAbBiIsS\u00E9\u00C9\u0131 _\u20AC\U0001F600";
  const size_t kinds = wcslen(letters);
  int hits = 0;
  for (int round = 0; round < 400; ++round) {
    const TextEncoding encoding{static_cast<TextFormat>(round % 5)};
    std::wstring text;
    for (unsigned i = 0; i < 150 + random() % 150; ++i) text += letters[random() % kinds];
    const int64_t block = 16 << (random() % 5);
    Searched searched(encoded(text, encoding), encoding, {block, 1024});
    SearchValues values;
    const size_t at = random() % (text.size() - 12);
    values.text = text.substr(at, 1 + random() % 11).c_str();
    values.caseSensitive = random() % 2;
    values.wholeWord = random() % 3 == 0;
    std::vector<int64_t> naive = naiveHits(text, encoding, values);
    ASSERT_EQ(searched.all(values), naive) << "seed 5 round " << round;
    hits += static_cast<int>(naive.size());
    values.reverse = true;
    const std::vector<int64_t> backward = searched.all(values);
    ASSERT_EQ(std::vector<int64_t>(backward.rbegin(), backward.rend()), naive) << "round " << round;
  }
  EXPECT_GT(hits, 400);
}

TEST(FileSearch, LongTextsAreFoundAcrossBlocks) {
  std::string bytes(20'000, 'a');
  const std::string needle = std::string(200, 'a') + "b" + std::string(54, 'a');
  for (const size_t place :
       {size_t{0}, size_t{3900}, size_t{4000}, size_t{4096}, bytes.size() - 255}) {
    std::string with = bytes;
    with.replace(place, needle.size(), needle);
    Searched searched(with, {TextFormat::Utf8}, {4096, 8192});
    SearchValues values = valuesOf(Westring(needle.c_str()).data());
    const auto expected = static_cast<int64_t>(place);
    EXPECT_EQ(searched.find(values, 0), expected);
    values.reverse = true;
    EXPECT_EQ(searched.find(values, static_cast<int64_t>(with.size())), expected);
  }
}

TEST(FileSearch, EveryByteValueIsFoundInACodePage) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  const TextEncoding encoding{TextFormat::CodePage, 850};
  Searched searched(bytes, encoding);
  std::wstring text;
  decodeText(bytes, encoding, text);
  ASSERT_EQ(text.size(), 256u);
  for (size_t i = 1; i < 256; ++i) {
    SearchValues values = valuesOf(text.substr(i, 1).c_str());
    values.caseSensitive = true;
    EXPECT_EQ(searched.find(values, 0), static_cast<int64_t>(i));
  }
}

TEST(FileSearch, CanBeStopped) {
  Searched searched(std::string(1 << 20, 'x'));
  int asked = 0;
  const SearchHit hit = searchFile(searched.file, valuesOf(L"y"), 0, [&] { return ++asked == 3; });
  EXPECT_EQ(hit.result, SearchHit::Result::Stopped);
  EXPECT_EQ(asked, 3);
}

TEST(FileSearch, WhatCannotBeReadIsPassedOver) {
  std::string bytes(200'000, 'x');
  bytes.replace(1000, 3, "abc");
  bytes.replace(190'000, 3, "abc");
  Searched searched(bytes);
  ReadHook hook(1, EIO);
  const int64_t hit = searched.find(valuesOf(L"abc"), 0);
  EXPECT_GE(hook.reads(), 2);
  EXPECT_EQ(hit, 190'000);
}

TEST(FileSearch, EveryWalkReadsTheFileOnce) {
  const std::string bytes(8 << 20, 'x');
  Searched searched(bytes);
  const ReadHook hook;
  EXPECT_EQ(searched.find(valuesOf(L"xy"), 0), -1);
  EXPECT_LE(hook.reads(), 32 + 64) << "a look over each border is small";
}

TEST(FileSearch, NothingIsReadBehindABlockWithAHit) {
  std::string bytes(8 << 20, 'x');
  bytes[1000] = 'y';
  Searched searched(bytes);
  const ReadHook hook;
  EXPECT_EQ(searched.find(valuesOf(L"y"), 0), 1000);
  EXPECT_EQ(hook.reads(), 1);
}
