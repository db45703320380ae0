#include "language/shell_quote.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <random>
#include <string>

#include "foundation/utf8.h"
#include "language/shell_test_support.h"
#include "options/options.h"

namespace {
std::string quoted(const wchar_t* text) {
  return toUtf8(quoteForShell(text)).data();
}
std::string doubled(const wchar_t* text) {
  return toUtf8(doubleLeadChar(text)).data();
}
std::string unquoted(const wchar_t* text) {
  return toUtf8(unquoteShellWord(text)).data();
}
}  // namespace

TEST(QuoteForShell, EachListedCharacterGetsABackslash) {
  for (const wchar_t* ch = L" !$~`[]{}\\'\"<>;&|()*?#\t\r"; *ch != 0; ++ch) {
    const wchar_t text[] = {L'a', *ch, L'b', 0};
    std::string expected = "a\\";
    expected += static_cast<char>(*ch);
    expected += 'b';
    EXPECT_EQ(quoted(text), expected);
  }
}

TEST(QuoteForShell, ANewlineGoesBetweenSingleQuotes) {
  EXPECT_EQ(quoted(L"a\nb"), "a'\n'b");
}

TEST(QuoteForShell, NothingElseIsChanged) {
  for (wchar_t ch = 1; ch < 0x100; ++ch) {
    if (wcschr(L" !$~`[]{}\\'\"<>;&|()*?#\t\r\n", ch) != nullptr) continue;
    const wchar_t text[] = {ch, 0};
    EXPECT_EQ(quoteForShell(text).length(), 1) << static_cast<int>(ch);
  }
  EXPECT_EQ(quoted(L""), "");
  EXPECT_EQ(quoted(L"a-b_c.d,e:f=g@h%i^j+k/l"), "a-b_c.d,e:f=g@h%i^j+k/l");
}

TEST(QuoteForShell, TheShellReadsEveryHostileNameAsItself) {
  for (const std::string& name : hostileNames()) {
    const Westring command = L"printf %s " + quoteNameForShell(decodeFileName(name.c_str()));
    const std::string expected = name[0] == '-' ? "./" + name : name;
    EXPECT_EQ(outputOfShell(command), expected) << toUtf8(command).data();
  }
}

TEST(QuoteForShell, TheShellReadsRandomNamesAsThemselves) {
  std::mt19937 random(11);
  for (int round = 0; round < 20; ++round) {
    // Many names in one command: what comes out between the marks are the names.
    Westring command = L"printf '<%s>'";
    std::string expected;
    for (int i = 0; i < 50; ++i) {
      const std::string name = randomName(random, 1 + random() % 30);
      command += L" ";
      command += quoteNameForShell(decodeFileName(name.c_str()));
      expected += "<" + std::string(name[0] == '-' ? "./" : "") + name + ">";
    }
    EXPECT_EQ(outputOfShell(command), expected) << toUtf8(command).data();
  }
}

TEST(QuoteForShell, ALeadingDashIsNoOption) {
  EXPECT_STREQ(toUtf8(quoteNameForShell(L"-rf")).data(), "./-rf");
  EXPECT_STREQ(toUtf8(quoteNameForShell(L"- f")).data(), "./-\\ f");
  EXPECT_STREQ(toUtf8(quoteNameForShell(L"a-rf")).data(), "a-rf");
  EXPECT_STREQ(toUtf8(quoteForShell(L"-rf")).data(), "-rf");
}

TEST(DoubleLeadChar, EachLeadCharacterBecomesTwo) {
  EXPECT_EQ(doubled(L"a!b!!"), "a!!b!!!!");
  EXPECT_EQ(doubled(L"ab"), "ab");
  GlobalOptions::CmdChar = '#';
  EXPECT_EQ(doubled(L"a!b#"), "a!b##");
  GlobalOptions::CmdChar = '!';
}

TEST(DoubleLeadChar, AnEmptiedOptionStandsForItsDefault) {
  GlobalOptions::CmdChar = 0;
  EXPECT_EQ(doubled(L"a!b"), "a!!b");
  GlobalOptions::CmdChar = '!';
}

TEST(UnquoteShellWord, QuotesAndBackslashesGo) {
  EXPECT_EQ(unquoted(L"a\\ b"), "a b");
  EXPECT_EQ(unquoted(L"'a b'c"), "a bc");
  EXPECT_EQ(unquoted(L"\"a b\"c"), "a bc");
  EXPECT_EQ(unquoted(L"'a\\b'"), "a\\b");
  EXPECT_EQ(unquoted(L"\"a\\b\\\"\\$\""), "a\\b\"$");
  EXPECT_EQ(unquoted(L"a\\"), "a\\");
  EXPECT_EQ(unquoted(L"'open"), "open");
  EXPECT_EQ(unquoted(L"\"open"), "open");
  EXPECT_EQ(unquoted(L""), "");
}

TEST(UnquoteShellWord, UndoesTheQuoting) {
  for (const std::string& name : hostileNames()) {
    const Westring back = unquoteShellWord(quoteForShell(decodeFileName(name.c_str())));
    EXPECT_EQ(std::string(toUtf8(back).data()), name);
  }
}
