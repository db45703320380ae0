#include "foundation/dir_finder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <map>
#include <set>

#include "foundation/dos_time.h"
#include "foundation/names.h"
#include "foundation/status.h"
#include "support/as_user.h"
#include "support/fault_hook.h"
#include "support/temp_dir.h"

namespace {

constexpr int Own = FindFlag::OwnRecord;
constexpr int PanelFlags = FindFlag::All | FindFlag::OwnRecord;
using NameSet = std::set<std::string>;

class DirFinderTest : public testing::Test {
 protected:
  // Every hit by its name; the status at the end goes to `ending`.
  std::map<std::string, EntryPtr> find(const wchar_t* pattern, int flags) {
    std::map<std::string, EntryPtr> result;
    DirFinder finder(dir.wide());
    entry* item = nullptr;
    ending = finder.first(pattern, flags | Own, item);
    while (ending == 0) {
      result[toUtf8(item->name()).data()] = EntryPtr(item);
      ending = finder.next(item);
    }
    return result;
  }

  NameSet names(const wchar_t* pattern, int flags) {
    NameSet result;
    for (const auto& hit : find(pattern, flags)) result.insert(hit.first);
    return result;
  }

  TempDir dir;
  int ending = 0;
};

TEST_F(DirFinderTest, FindsEveryNameAndThenEnds) {
  dir.write("file", "12345");
  dir.makeDir("sub");
  dir.write(".hidden", "");
  EXPECT_EQ(names(L"*", PanelFlags), (NameSet{".", "..", ".hidden", "file", "sub"}));
  EXPECT_EQ(ending, Status::NoMoreFiles);
}

TEST_F(DirFinderTest, DescribesEachEntry) {
  dir.write("file", "12345");
  dir.chmod("file", 04640);
  dir.makeDir("sub");
  dir.write(".hidden", "");
  const timespec times[2] = {{1000000000, 0}, {1000000000, 0}};
  utimensat(AT_FDCWD, dir.path("file").c_str(), times, 0);
  const auto hits = find(L"*", PanelFlags);
  const entry* file = hits.at("file").get();
  EXPECT_EQ(file->size, 5u);
  EXPECT_EQ(file->attributes, 0);
  EXPECT_EQ(file->mode, S_IFREG | 04640);
  EXPECT_EQ(file->owner, geteuid());
  EXPECT_EQ(file->group, getegid());
  EXPECT_EQ(file->total, -1);
  const DosTime words = timeToDos(1000000000);
  EXPECT_EQ(file->date, words.date);
  EXPECT_EQ(file->time, words.time);
  EXPECT_EQ(hits.at("sub")->attributes, Attribute::Directory);
  EXPECT_EQ(hits.at("sub")->size, 0u);
  EXPECT_EQ(hits.at(".hidden")->attributes, Attribute::Hidden);
  EXPECT_EQ(hits.at("..")->attributes, Attribute::Directory);
}

TEST_F(DirFinderTest, WithoutTheHiddenFlagOnlyDotsOfTheDirectoryAndDoubleDotsPass) {
  dir.write(".hidden", "");
  dir.write("..twice", "");
  dir.write("...", "");
  dir.write("plain", "");
  EXPECT_EQ(names(L"*", 0), (NameSet{".", "..", "..twice", "...", "plain"}));
  EXPECT_EQ(names(L"*", FindFlag::ShowHidden),
            (NameSet{".", "..", "..twice", "...", "plain", ".hidden"}));
  EXPECT_TRUE(find(L"*", FindFlag::All).at("..twice")->isHidden());
}

TEST_F(DirFinderTest, ALinkIsDescribedByItsTarget) {
  dir.write("file", "12345");
  dir.makeDir("sub");
  dir.link("file", "tofile");
  dir.link("sub", "tosub");
  dir.link("tosub", "tolink");
  dir.link("file", ".hiddenlink");
  const auto hits = find(L"*", PanelFlags);
  EXPECT_EQ(hits.at("tofile")->attributes, Attribute::Link);
  EXPECT_EQ(hits.at("tofile")->size, 5u);
  EXPECT_EQ(hits.at("tosub")->attributes, Attribute::Link | Attribute::Directory);
  EXPECT_EQ(hits.at("tolink")->attributes, Attribute::Link | Attribute::Directory);
  EXPECT_EQ(hits.at(".hiddenlink")->attributes, Attribute::Link | Attribute::Hidden);
}

TEST_F(DirFinderTest, ALinkThatCantBeFollowedIsLeftOut) {
  dir.link("nowhere", "dangling");
  dir.link("loop", "loop");
  dir.write("file", "");
  EXPECT_EQ(names(L"*", PanelFlags), (NameSet{".", "..", "file"}));
}

TEST_F(DirFinderTest, DirectoriesOnlyKeepsLinksToThem) {
  dir.write("file", "");
  dir.makeDir("sub");
  dir.link("sub", "tosub");
  dir.link("file", "tofile");
  EXPECT_EQ(names(L"*", PanelFlags | FindFlag::DirectoriesOnly),
            (NameSet{".", "..", "sub", "tosub"}));
}

TEST_F(DirFinderTest, APatternIgnoresCase) {
  for (const char* name : {"ReadMe.TXT", "other.txt", "image.png", "txt"}) dir.write(name, "");
  EXPECT_EQ(names(L"*.txt", FindFlag::All), (NameSet{"ReadMe.TXT", "other.txt"}));
  EXPECT_EQ(names(L"readme.*", FindFlag::All), (NameSet{"ReadMe.TXT"}));
  EXPECT_EQ(names(L"nothing", FindFlag::All), NameSet{});
  EXPECT_EQ(ending, Status::NoMoreFiles);
}

TEST_F(DirFinderTest, APatternMayNameADirectoryBelowTheBase) {
  dir.makeDir("sub");
  dir.write("sub/inner.c", "");
  dir.write("outer.c", "");
  EXPECT_EQ(names(L"sub/*.c", FindFlag::All), (NameSet{"inner.c"}));
}

TEST_F(DirFinderTest, AnAbsolutePatternLeavesTheBase) {
  dir.makeDir("sub");
  dir.write("sub/inner.c", "");
  const Westring pattern = joinPath(dir.wide("sub"), L"*.c");
  EXPECT_EQ(names(pattern.data(), FindFlag::All), (NameSet{"inner.c"}));
  EXPECT_EQ(names(L"/etc", FindFlag::All), (NameSet{"etc"}));
}

TEST_F(DirFinderTest, WithoutABaseTheWorkingDirectoryIsSearched) {
  dir.write("file", "");
  dir.makeDir("sub");
  dir.write("sub/inner", "");
  EXPECT_EQ(runInChild([&] {
              ASSERT_EQ(chdir(dir.path().c_str()), 0);
              DirFinder finder(L"");
              entry* item;
              EXPECT_EQ(finder.first(L"f*", FindFlag::All, item), 0);
              EXPECT_TRUE(sameName(item->name(), L"file"));
              EXPECT_EQ(finder.first(L"sub/i*", FindFlag::All, item), 0);
              EXPECT_TRUE(sameName(item->name(), L"inner"));
            }),
            0);
}

TEST_F(DirFinderTest, TheRootIsSearchedAsABase) {
  DirFinder finder(L"/");
  entry* item;
  EXPECT_EQ(finder.first(L"etc", FindFlag::All, item), 0);
  EXPECT_TRUE(item->isDirectory());
}

TEST_F(DirFinderTest, ADirectoryWithStrangeNamesIsABaseLikeAnyOther) {
  dir.makeDir("a:b\\c [x]*");
  dir.write("a:b\\c [x]*/...", "");
  DirFinder finder(dir.wide("a:b\\c [x]*"));
  entry* item;
  NameSet found;
  for (int status = finder.first(L"*", FindFlag::All, item); status == 0;
       status = finder.next(item)) {
    found.insert(toUtf8(item->name()).data());
  }
  EXPECT_EQ(found, (NameSet{".", "..", "..."}));
}

TEST_F(DirFinderTest, EveryNameKeepsItsBytes) {
  const std::string longest(255, 'x');
  const NameSet wanted{"\xff\xfe", "\xc0\xaf",    "caf\xc3\xa9",  "new\nline",
                       "\x01",     "-dash",       "quote\"'",     longest,
                       " ",        "back\\slash", "\xed\xa0\x80", "\xf0\x9f\x98\x80"};
  for (const std::string& name : wanted) dir.write(name, "x");
  NameSet found = names(L"*", FindFlag::All);
  found.erase(".");
  found.erase("..");
  EXPECT_EQ(found, wanted);
}

TEST_F(DirFinderTest, AnEntryIsOneBlockOfExactSize) {
  dir.write("caf\xc3\xa9", "");
  DirFinder finder(dir.wide());
  entry* item;
  ASSERT_EQ(finder.first(L"caf*", PanelFlags, item), 0);
  const EntryPtr owned(item);
  EXPECT_TRUE(sameName(owned->name(), L"caf\u00e9"));
}

TEST_F(DirFinderTest, WithoutOwnRecordsTheResultLivesUntilTheNext) {
  dir.write("a1", "");
  dir.write("a2", "");
  DirFinder finder(dir.wide());
  entry* item = nullptr;
  ASSERT_EQ(finder.first(L"a*", FindFlag::All, item), 0);
  const std::string firstName = toUtf8(item->name()).data();
  ASSERT_EQ(finder.next(item), 0);
  EXPECT_NE(firstName, toUtf8(item->name()).data());
  EXPECT_EQ(finder.next(item), Status::NoMoreFiles);
  EXPECT_EQ(item, nullptr);
  EXPECT_EQ(finder.next(item), Status::NoMoreFiles);
}

TEST_F(DirFinderTest, WhatCantBeOpenedIsTheStatus) {
  dir.write("file", "");
  entry* item;
  EXPECT_EQ(DirFinder(dir.wide("missing")).first(L"*", PanelFlags, item), ENOENT);
  EXPECT_EQ(item, nullptr);
  EXPECT_EQ(DirFinder(dir.wide("file")).first(L"*", PanelFlags, item), ENOTDIR);
}

TEST_F(DirFinderTest, ADirectoryWithoutRightsIsRefusedOrEmpty) {
  dir.makeDir("unreadable");
  dir.makeDir("unsearchable");
  dir.write("unsearchable/file", "");
  dir.chmod("unreadable", 0311);
  dir.chmod("unsearchable", 0444);
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] {
              entry* item;
              EXPECT_EQ(DirFinder(dir.wide("unreadable")).first(L"*", FindFlag::All, item), EACCES);
              // NameSet can be read there, but nothing behind them: all are left out.
              EXPECT_EQ(DirFinder(dir.wide("unsearchable")).first(L"file", FindFlag::All, item),
                        Status::NoMoreFiles);
            }),
            0);
}

TEST_F(DirFinderTest, AReadErrorInTheMiddleIsTheStatus) {
  dir.write("file", "");
  DirFinder finder(dir.wide());
  const FaultHook hook("readDirectory", EIO);
  entry* item;
  EXPECT_EQ(finder.first(L"*", FindFlag::All, item), EIO);
}

TEST_F(DirFinderTest, AnEntryThatVanishedMeanwhileIsLeftOut) {
  dir.write("file", "");
  const FaultHook hook("statAt", ENOENT);
  EXPECT_EQ(names(L"*", FindFlag::All), NameSet{});
  EXPECT_EQ(ending, Status::NoMoreFiles);
}

TEST_F(DirFinderTest, EachEntryCostsOneLookAndTheDirectoryOneOpen) {
  for (int i = 0; i < 50; ++i) dir.write("file" + std::to_string(i), "");
  const FaultHook hook;
  names(L"*", PanelFlags);
  EXPECT_EQ(hook.calls("openDirectory"), 1);
  EXPECT_EQ(hook.calls("closeDirectory"), 1);
  EXPECT_EQ(hook.calls("statAt"), 52);
  EXPECT_EQ(hook.calls("stat") + hook.calls("lstat"), 0);
}

TEST_F(DirFinderTest, LookingUpOnePathIsNoPatternSearch) {
  dir.write("README", "");
  dir.write("[x]", "");
  dir.write("abc", "");
  DirFinder finder(dir.wide());
  entry* item;
  EXPECT_EQ(finder.info(L"readme", FindFlag::All, item), ENOENT);
  EXPECT_EQ(item, nullptr);
  EXPECT_EQ(finder.info(L"a*", FindFlag::All, item), ENOENT);
  EXPECT_EQ(finder.info(L"[x]", FindFlag::All, item), 0);
  EXPECT_TRUE(sameName(item->name(), L"[x]"));
  EXPECT_EQ(finder.info(dir.wide("README"), PanelFlags, item), 0);
  const EntryPtr owned(item);
  EXPECT_TRUE(sameName(owned->name(), L"README"));
}

TEST_F(DirFinderTest, LookingUpOnePathReachesBelowAnUnreadableDirectory) {
  dir.makeDir("closed");
  dir.makeDir("closed/inner");
  dir.chmod("closed", 0311);
  dir.openToAll();
  EXPECT_EQ(runAsUser([&] {
              DirFinder finder(dir.wide());
              entry* item;
              EXPECT_EQ(finder.info(L"closed/inner", FindFlag::All, item), 0);
              EXPECT_TRUE(item->isDirectory());
            }),
            0);
}

TEST_F(DirFinderTest, LookingUpOnePathFollowsTheFlags) {
  dir.write(".hidden", "");
  dir.link("nowhere", "dangling");
  DirFinder finder(dir.wide());
  entry* item;
  EXPECT_EQ(finder.info(L".hidden", 0, item), Status::NoMoreFiles);
  EXPECT_EQ(finder.info(L".hidden", FindFlag::ShowHidden, item), 0);
  EXPECT_EQ(finder.info(L".hidden", FindFlag::All | FindFlag::DirectoriesOnly, item),
            Status::NoMoreFiles);
  EXPECT_EQ(finder.info(L"dangling", FindFlag::All, item), ENOENT);
  EXPECT_EQ(finder.info(L"/", FindFlag::All, item), 0);
  EXPECT_TRUE(item->isDirectory());
}

}  // namespace
