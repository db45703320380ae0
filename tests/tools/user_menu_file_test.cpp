#include "tools/user_menu_file.h"

#include <fcntl.h>

#include <random>

#include "foundation/utf8.h"
#include "support/as_user.h"
#include "support/temp_dir.h"
#include "tools/user_menu_place.h"

namespace {

// Entries as "KEY=title(command|command){submenu}", one behind the other.
std::string textOf(MenuStore& menu) {
  std::string text;
  for (int i = 0; i < menu.count(); ++i) {
    MenuEntry& entry = *menu.peek(i);
    text += std::string(entry.key.data()) + "=" + entry.title.data() + "(";
    for (int c = 0; c < entry.commands.count(); ++c) {
      text += (c > 0 ? "|" : "") + std::string(toUtf8(*entry.commands.peek(c)).data());
    }
    text += ")";
    if (entry.submenu) text += "{" + textOf(*entry.submenu) + "}";
    text += " ";
  }
  if (!text.empty()) text.pop_back();
  return text;
}

// How many submenus stand in each other.
int depthOf(MenuStore& menu) {
  int deepest = 0;
  for (int i = 0; i < menu.count(); ++i) {
    MenuStore* below = menu.peek(i)->submenu.get();
    if (below) deepest = std::max(deepest, 1 + depthOf(*below));
  }
  return deepest;
}

class UserMenuFile : public testing::Test {
 protected:
  // Reads a file of `files` by its name.
  std::string read(const std::string& name) {
    menu = std::make_unique<MenuStore>();
    told.clear();
    Descriptor file(open(files.path(name).c_str(), O_RDONLY | O_CLOEXEC));
    readMenu(file, files.wide(name), *menu, [this](const char* text, const Westring& path) {
      told.push_back(std::string(text) + ": " + toUtf8(path).data());
      return told.size() < mostTold;
    });
    return textOf(*menu);
  }
  std::string parse(const std::string& content) {
    files.write("td.mnu", content);
    return read("td.mnu");
  }

  TempDir files;
  std::unique_ptr<MenuStore> menu;
  std::vector<std::string> told;
  size_t mostTold = 1000;
};

constexpr char CannotOpen[] = "Unable to open included menu: ";
constexpr char IncludesItself[] = "Included menu includes itself: ";
}  // namespace

TEST_F(UserMenuFile, EntriesHaveAKeyATitleAndCommands) {
  EXPECT_EQ(parse("a: Archive it\n  tar cf !t.tar !t\n\tls -l\nF5 :  Copy  \n cp x y\n"),
            "A=Archive it(tar cf !t.tar !t|ls -l) F5=Copy(cp x y)");
  EXPECT_EQ(menu->peek(0)->keyCode, 'A');
  EXPECT_EQ(menu->peek(1)->keyCode, Key::F5);
  EXPECT_EQ(menu->greatestKeyLength, 2);
}

TEST_F(UserMenuFile, AByteOrderMarkIsNoPartOfTheFirstKey) {
  EXPECT_EQ(parse("\xEF\xBB\xBF"
                  "a: Title\n b\n"),
            "A=Title(b)");
}

TEST_F(UserMenuFile, ACommandBeforeAnyEntryIsDropped) {
  EXPECT_EQ(parse("  rm everything\na: Safe\n  ls\n"), "A=Safe(ls)");
}

TEST_F(UserMenuFile, KeysAreCharactersAndFunctionKeys) {
  const std::pair<const wchar_t*, Key::Code> rows[] = {
      {L"A", 'A'},
      {L"7", '7'},
      {L"#", '#'},
      {L"\xC9", L'\xC9'},
      {L"\x1F600", L'\U0001F600'},
      {L"F1", Key::F1},
      {L"F10", Key::F10},
      {L"F11", Key::F11},
      {L"F12", Key::F12},
      {L"CF1", Key::CtrlF1},
      {L"CF12", Key::CtrlF12},
      {L"SF3", Key::ShiftF3},
      {L"SF11", Key::ShiftF11},
      {L"AF10", Key::AltF10},
      {L"AF12", Key::AltF12},
      {L"", Key::NoKey},
      {L"AB", Key::NoKey},
      {L"F0", Key::NoKey},
      {L"F13", Key::NoKey},
      {L"F123", Key::NoKey},
      {L"F1X", Key::NoKey},
      {L"CF", Key::NoKey},
      {L"XF1", Key::NoKey},
      {L"CF0", Key::NoKey},
      {L"F-1", Key::NoKey},
      {L"F 1", Key::NoKey},
  };
  for (const auto& [text, code] : rows) EXPECT_EQ(menuKeyCode(text), code) << toUtf8(text).data();
}

TEST_F(UserMenuFile, AKeyOfOneCharacterMayBeUtf8) {
  EXPECT_EQ(parse("\xC3\xA9: \xC3\x9C"
                  "bersicht\n  ls\n"),
            "\xC3\x89=\xC3\x9C"
            "bersicht(ls)");
  EXPECT_EQ(menu->peek(0)->keyCode, L'\xC9');
  EXPECT_EQ(menu->greatestKeyLength, 1);
}

TEST_F(UserMenuFile, MalformedLinesAreSkippedAndTheirCommandsBelongToNoOtherEntry) {
  EXPECT_EQ(
      parse("a: One\n  first\nno colon here\n  second\n: no key\n  third\n"
            "DEL: Remove all\n  rm -r .\nb: Two\n  fourth\n# a note: with a colon\n  fifth\n"),
      "A=One(first|second|third) B=Two(fourth|fifth)");
}

TEST_F(UserMenuFile, BracesMakeSubmenus) {
  EXPECT_EQ(parse("m: More\n{\n  x: Deep\n    deep\n  y: no blanks before an entry\n"
                  "z: Zed\n  zed\nn: Next\n  {\nq: Q\n  }\n}\na: After\n  after\n"),
            "M=More(){Z=Zed(zed) N=Next(){Q=Q()}} A=After(after)");
}

TEST_F(UserMenuFile, ABraceBelowCommandsOrNothingIsALineLikeOthers) {
  EXPECT_EQ(parse("{\na: One\n  first\n{\nb: Two\n  {\n}\nc: Three\n"),
            "A=One(first) B=Two(){} C=Three()");
  EXPECT_EQ(parse("a: One\n  first\n  {\n"), "A=One(first|{)");
}

TEST_F(UserMenuFile, AClosingBraceAtTheTopEndsTheFile) {
  EXPECT_EQ(parse("a: One\n}\nb: Two\n"), "A=One()");
}

TEST_F(UserMenuFile, AnIncludeStandsInItsMenuAndEndsWithItsOwnBrace) {
  files.makeDir("sub");
  files.write("sub/more.mnu", "i: Included\n  one\n}\nj: Never\n");
  EXPECT_EQ(parse("m: More\n{\na: A\n!InClude sub/more.mnu \n  nobody's\nb: B\n}\nc: C\n"),
            "M=More(){A=A() I=Included(one) B=B()} C=C()");
  EXPECT_TRUE(told.empty());
}

TEST_F(UserMenuFile, IncludesAreLookedForBesideTheFileThatNamesThem) {
  files.makeDir("sub");
  files.write("sub/one.mnu", "!include two.mnu\n");
  files.write("sub/two.mnu", "t: Two\n");
  files.write("two.mnu", "w: Wrong\n");
  EXPECT_EQ(parse("!include sub/one.mnu\n!include " + files.path("two.mnu") + "\n"),
            "T=Two() W=Wrong()");
}

TEST_F(UserMenuFile, AnIncludeThatCannotBeOpenedIsTold) {
  files.makeDir("directory");
  ASSERT_EQ(mkfifo(files.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(parse("!include missing.mnu\n!include directory\n!include pipe\na: A\n"), "A=A()");
  EXPECT_EQ(told, (std::vector<std::string>{std::string(CannotOpen) + "missing.mnu",
                                            std::string(CannotOpen) + "directory",
                                            std::string(CannotOpen) + "pipe"}));
}

TEST_F(UserMenuFile, AnIncludeThatOpensAndCannotBeReadIsTold) {
  files.write("long.mnu", std::string(LongestMenu + 1, '\n'));
  EXPECT_EQ(parse("a: A\n!include long.mnu\nb: B\n"), "A=A() B=B()");
  EXPECT_EQ(told, std::vector<std::string>{std::string(CannotOpen) + "long.mnu"});
}

TEST_F(UserMenuFile, WhoHasSeenEnoughIsToldNoMore) {
  mostTold = 2;
  EXPECT_EQ(parse("!include 1\n!include 2\n!include 3\na: A\n"), "A=A()");
  EXPECT_EQ(told.size(), 2u);
}

TEST_F(UserMenuFile, ACycleOfIncludesIsFoundWhateverTheFilesAreCalled) {
  files.write("other.mnu", "o: Other\n!include alias.mnu\n");
  files.link("td.mnu", "alias.mnu");
  EXPECT_EQ(parse("a: A\n!include other.mnu\nb: B\n"), "A=A() O=Other() B=B()");
  EXPECT_EQ(told, std::vector<std::string>{std::string(IncludesItself) + "alias.mnu"});
  ASSERT_EQ(::link(files.path("td.mnu").c_str(), files.path("hard.mnu").c_str()), 0);
  EXPECT_EQ(parse("a: A\n!include hard.mnu\n"), "A=A()");
  EXPECT_EQ(told, std::vector<std::string>{std::string(IncludesItself) + "hard.mnu"});
}

TEST_F(UserMenuFile, OneFileMayBeIncludedTwice) {
  files.write("more.mnu", "m: More\n");
  EXPECT_EQ(parse("!include more.mnu\n!include more.mnu\n"), "M=More() M=More()");
  EXPECT_TRUE(told.empty());
}

TEST_F(UserMenuFile, IncludesAreThirtyTwoDeepAndNoDeeper) {
  for (int i = 1; i <= 40; ++i) {
    files.write("f" + std::to_string(i),
                "a: A" + std::to_string(i) + "\n!include f" + std::to_string(i + 1) + "\n");
  }
  read("f1");
  EXPECT_EQ(menu->count(), DeepestMenu + 1);
  EXPECT_EQ(told, std::vector<std::string>{std::string(CannotOpen) + "f34"});
}

TEST_F(UserMenuFile, IncludesThatMultiplyComeToAnEnd) {
  for (int i = 1; i <= 30; ++i) {
    const std::string next = "!include f" + std::to_string(i + 1) + "\n";
    files.write("f" + std::to_string(i), "a: A\n" + next + next);
  }
  files.write("f31", "z: Z\n");
  mostTold = 1;
  read("f1");
  EXPECT_LE(menu->count(), MostIncludes + 1);
  EXPECT_EQ(told.size(), 1u);
}

TEST_F(UserMenuFile, SubmenusAreThirtyTwoDeepAlsoAcrossFilesAndWhatLiesBelowIsLeftOut) {
  std::string text;
  for (int i = 0; i < 20; ++i) text += "a: A\n{\n";
  files.write("deep.mnu", text + "c: unclosed\n");
  text += "!include deep.mnu\n";
  for (int i = 0; i < 20; ++i) text += "}\n";
  parse(text + "b: B\n");
  ASSERT_EQ(menu->count(), 2);
  EXPECT_EQ(menu->peek(1)->keyCode, 'B');
  EXPECT_EQ(depthOf(*menu), DeepestMenu);
}

TEST_F(UserMenuFile, OfALongLineTheFirst4096BytesCount) {
  const auto commandOf = [this](size_t length) {
    parse("a: A\n" + std::string(1, ' ') + std::string(length - 1, 'x') + "\nb: B\n");
    EXPECT_EQ(menu->count(), 2);
    return menu->peek(0)->commands.peek(0)->length();
  };
  EXPECT_EQ(commandOf(4095), 4094);
  EXPECT_EQ(commandOf(4096), 4095);
  EXPECT_EQ(commandOf(4097), 4095);
  EXPECT_EQ(commandOf(100000), 4095);
}

TEST_F(UserMenuFile, LineEndsOfOtherSystemsAndAMissingLastOneAreTaken) {
  EXPECT_EQ(parse("a: A\r\n  one \r\n\r\nb: B\r\n  two"), "A=A(one) B=B(two)");
}

TEST_F(UserMenuFile, CommandsKeepBytesThatAreNoUtf8) {
  EXPECT_EQ(parse("a: A\n  cat \xFF\xE9\n"), "A=A(cat \xFF\xE9)");
}

TEST_F(UserMenuFile, AnyCutAndAnyDamageIsTaken) {
  files.write("more.mnu", "i: Included\n  one\n}\n");
  const std::string good =
      "a: A\n  one\n  two\nm: M\n{\nb: B\n  three\n!include more.mnu\n}\nCF7: C\n  four\n";
  for (size_t length = 0; length <= good.size(); ++length) parse(good.substr(0, length));
  std::mt19937 random(1);
  for (int copy = 0; copy < 500; ++copy) {
    std::string bad = good;
    for (int i = 0; i < 2; ++i) bad[random() % bad.size()] = static_cast<char>(random());
    parse(bad);
  }
  EXPECT_EQ(parse(good), "A=A(one|two) M=M(){B=B(three) I=Included(one)} CF7=C(four)");
}

// ---- which file

namespace {
class UserMenuPlace : public testing::Test {
 protected:
  std::string found(const std::string& directory) const {
    const MenuFile menu = findLocalMenu(files.wide(directory), L"td.mnu");
    return menu.file.valid() ? std::string(toUtf8(menu.path).data()).substr(files.path().size())
                             : "";
  }
  TempDir files;
};
}  // namespace

TEST_F(UserMenuPlace, TheNearestDirectoryThatHasOneIsTaken) {
  files.makeDir("a");
  files.makeDir("a/b");
  files.makeDir("a/b/c");
  files.write("a/td.mnu", "");
  EXPECT_EQ(found("a/b/c"), "/a/td.mnu");
  files.write("a/b/td.mnu", "");
  EXPECT_EQ(found("a/b/c"), "/a/b/td.mnu");
  EXPECT_EQ(found("a"), "/a/td.mnu");
}

TEST_F(UserMenuPlace, WhatOthersCanChangeIsPassedOver) {
  files.makeDir("a");
  files.makeDir("a/b");
  files.write("a/td.mnu", "");
  files.write("a/b/td.mnu", "");
  EXPECT_EQ(found("a/b"), "/a/b/td.mnu");
  for (const mode_t mode : {0666, 0646}) {
    files.chmod("a/b/td.mnu", mode);
    EXPECT_EQ(found("a/b"), "/a/td.mnu") << std::oct << mode;
  }
  files.chmod("a/b/td.mnu", 0644);
  for (const mode_t mode : {0777, 0757, 01777}) {
    files.chmod("a/b", mode);
    EXPECT_EQ(found("a/b"), "/a/td.mnu") << std::oct << mode;
  }
  files.chmod("a/b", 0755);
  EXPECT_EQ(found("a/b"), "/a/b/td.mnu");
}

TEST_F(UserMenuPlace, AGroupThatIsNotTheUsersOwnCountsAsOthers) {
  files.makeDir("a");
  files.write("a/td.mnu", "");
  if (chown(files.path("a/td.mnu").c_str(), geteuid(), 12345) == 0) {
    files.chmod("a/td.mnu", 0664);
    EXPECT_EQ(found("a"), "");
  }
  ASSERT_EQ(chown(files.path("a/td.mnu").c_str(), geteuid(), getegid()), 0);
  files.chmod("a/td.mnu", 0664);
  EXPECT_EQ(found("a") != "", getegid() == geteuid());
}

TEST(TrustedMenu, IsWrittenByTheUserOrRootAlone) {
  constexpr uid_t user = 1000, somebody = 1001, root = 0;
  constexpr gid_t team = 50;
  const struct {
    uid_t owner;
    gid_t group;
    mode_t mode;
    bool trusted;
  } rows[] = {{user, user, 0644, true},      {user, user, 0664, true},
              {user, user, 0666, false},     {user, team, 0644, true},
              {user, team, 0664, false},     {root, root, 0644, true},
              {root, root, 0664, false},     {root, root, 01777, false},
              {somebody, user, 0600, false}, {somebody, somebody, 0444, false}};
  for (const auto& row : rows) {
    struct stat info {};
    info.st_uid = row.owner;
    info.st_gid = row.group;
    info.st_mode = row.mode;
    EXPECT_EQ(isTrustedMenu(info, user, user), row.trusted)
        << row.owner << ' ' << row.group << ' ' << std::oct << row.mode;
  }
  struct stat own {};
  own.st_uid = own.st_gid = user;
  own.st_mode = 0664;
  EXPECT_FALSE(isTrustedMenu(own, user, team)) << "others may be in a group that isn't the user's";
}

TEST_F(UserMenuPlace, AFileOfSomebodyElseIsPassedOverUnlessItIsRoots) {
  if (geteuid() != 0) GTEST_SKIP() << "only root has files of others";
  files.chmod("", 0755);
  files.makeDir("root");
  files.write("root/td.mnu", "");
  files.makeDir("other");
  files.write("other/td.mnu", "");
  ASSERT_EQ(chown(files.path("other/td.mnu").c_str(), 4321, 4321), 0);
  files.makeDir("place");
  files.write("place/td.mnu", "");
  ASSERT_EQ(chown(files.path("place").c_str(), 4321, 4321), 0);
  EXPECT_EQ(runAsUser([&] {
              EXPECT_EQ(found("root"), "/root/td.mnu");
              EXPECT_EQ(found("other"), "");
              EXPECT_EQ(found("place"), "");
            }),
            0);
}

TEST_F(UserMenuPlace, OnlyRegularFilesAreMenus) {
  files.makeDir("a");
  files.makeDir("a/td.mnu");
  EXPECT_EQ(found("a"), "");
  files.makeDir("b");
  ASSERT_EQ(mkfifo(files.path("b/td.mnu").c_str(), 0600), 0);
  EXPECT_EQ(found("b"), "");
  files.makeDir("c");
  files.write("c/mine", "");
  files.link("mine", "c/td.mnu");
  EXPECT_EQ(found("c"), "/c/td.mnu");
}
