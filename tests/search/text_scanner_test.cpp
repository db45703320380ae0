#include "search/text_scanner.h"

#include <gtest/gtest.h>

#include <random>

#include "foundation/utf8.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

constexpr size_t SmallBlock = 16;

struct Scan {
  TempDir directory;
  bool stopped = false;
  TextScanner::StopAsked stop = [this] { return stopped; };
  int error = 0;

  // The first bytes of all hits, each looked for behind the one before.
  std::vector<int64_t> all(const std::string& content, const SearchedText& text,
                           size_t block = SmallBlock) {
    directory.write("f", content);
    const Descriptor fd(open(directory.path("f").c_str(), O_RDONLY | O_CLOEXEC));
    TextScanner scanner(text, stop, block);
    scanner.start(fd.get(), static_cast<int64_t>(content.size()));
    std::vector<int64_t> positions;
    TextHit hit;
    while (scanner.next(hit.end(), hit) == ScanResult::Found) positions.push_back(hit.position);
    error = scanner.error();
    return positions;
  }
};

SearchedText exactly(const wchar_t* text) {
  return SearchedText(text, CaseRule::Exact, false);
}

using Positions = std::vector<int64_t>;

std::string utf16(const std::string& ascii, bool big) {
  std::string result = big ? "\xFE\xFF" : "\xFF\xFE";
  for (const char byte : ascii) {
    result += big ? std::string{'\0', byte} : std::string{byte, '\0'};
  }
  return result;
}

}  // namespace

TEST(TextScanner, FindsATextWhereverBlocksEnd) {
  Scan scan;
  const SearchedText text = exactly(L"needle");
  for (size_t at = 0; at < 200; ++at) {
    const std::string content = std::string(at, '.') + "needle" + std::string(200 - at, '.');
    ASSERT_EQ(scan.all(content, text), Positions{static_cast<int64_t>(at)}) << at;
  }
  EXPECT_EQ(scan.all("needl", text), Positions{});
  EXPECT_EQ(scan.all("", text), Positions{});
}

TEST(TextScanner, HitsDoNotOverlap) {
  Scan scan;
  EXPECT_EQ(scan.all("aaaaa", exactly(L"aa")), (Positions{0, 2}));
}

TEST(TextScanner, CaseIsFoldedUnlessItCounts) {
  Scan scan;
  const std::string content = "Text tEXT text";
  EXPECT_EQ(scan.all(content, exactly(L"text")), Positions{10});
  EXPECT_EQ(scan.all(content, SearchedText(L"TEXT", CaseRule::Folded, false)),
            (Positions{0, 5, 10}));
}

TEST(TextScanner, WholeWordsStandAlone) {
  Scan scan;
  const SearchedText text(L"word", CaseRule::Folded, true);
  EXPECT_EQ(scan.all("words word sword_word word1 (word) word", text), (Positions{6, 29, 35}));
}

TEST(TextScanner, ATextBeyondAsciiIsFoundInBothEncodings) {
  Scan scan;
  const SearchedText text = exactly(L"\u00E9t\u00E9");  // in page 850 that letter is 0x82
  EXPECT_EQ(scan.all("xx\x82t\x82 yy \xC3\xA9t\xC3\xA9 \x82t\x82", text), (Positions{2, 9, 15}));
}

TEST(TextScanner, TheMarkOfAFileDecidesForUtf16) {
  Scan scan;
  const SearchedText text = exactly(L"text");
  EXPECT_EQ(scan.all(utf16("a text", false), text), Positions{6});
  EXPECT_EQ(scan.all(utf16("a text", true), text), Positions{6});
  EXPECT_EQ(scan.all(utf16("a text", true).substr(2), text), Positions{});
  EXPECT_EQ(scan.all(utf16("", false) + "text", text), Positions{});
}

TEST(TextScanner, AgreesWithAPlainSearchOfRandomBytes) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  Scan scan;
  for (int round = 0; round < 200; ++round) {
    std::string content(random() % 300, 'a');
    for (char& byte : content) byte = static_cast<char>('a' + random() % 2);
    std::string wanted(1 + random() % 5, 'a');
    for (char& byte : wanted) byte = static_cast<char>('a' + random() % 2);
    Positions expected;
    for (size_t at = content.find(wanted); at != std::string::npos;
         at = content.find(wanted, at + wanted.size())) {
      expected.push_back(static_cast<int64_t>(at));
    }
    const SearchedText text = exactly(decodeFileName(wanted.c_str()).data());
    ASSERT_EQ(scan.all(content, text, 1 + random() % 40), expected) << content << " " << wanted;
  }
}

TEST(TextScanner, AReadErrorIsNoEnd) {
  Scan scan;
  const FaultHook hook("readAt", EIO);
  EXPECT_EQ(scan.all("needle", exactly(L"needle")), Positions{});
  EXPECT_EQ(scan.error, EIO);
}

TEST(TextScanner, StopsBetweenBlocks) {
  Scan scan;
  scan.directory.write("f", std::string(1000, '.') + "needle");
  const Descriptor fd(open(scan.directory.path("f").c_str(), O_RDONLY | O_CLOEXEC));
  const SearchedText text = exactly(L"needle");
  TextScanner scanner(text, scan.stop, SmallBlock);
  scanner.start(fd.get(), 1006);
  scan.stopped = true;
  TextHit hit;
  EXPECT_EQ(scanner.next(0, hit), ScanResult::Stopped);
}

TEST(TextScanner, AFileThatDoesNotTellItsSizeIsReadToItsEnd) {
  Scan scan;
  const Descriptor fd(open("/proc/self/status", O_RDONLY | O_CLOEXEC));
  const SearchedText text = exactly(L"Threads:");
  TextScanner scanner(text, scan.stop);
  scanner.start(fd.get(), 0);
  TextHit hit;
  EXPECT_EQ(scanner.next(0, hit), ScanResult::Found);
}
