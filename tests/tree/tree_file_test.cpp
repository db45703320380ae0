#include "tree/tree_file.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <random>

#include "foundation/names.h"
#include "options/options.h"
#include "support/fault_hook.h"
#include "support/files.h"
#include "support/temp_dir.h"
#include "tree/tree_text.h"

namespace {

const std::string NoVolume(8, '\0');

class TreeFile : public ::testing::Test {
 protected:
  // What a file of these lines, behind the header, gives.
  std::string loaded(const std::string& lines) {
    dir.write("tree", NoVolume + lines);
    last = loadTree(tree, dir.wide("tree"));
    EXPECT_EQ(faultOf(tree), "");
    return textOf(tree);
  }
  std::string saved() {
    EXPECT_EQ(saveTree(tree, dir.wide("tree")), 0);
    return dir.read("tree");
  }
  TempDir dir;
  CTree tree;
  TreeLoad last = TreeLoad::NoFile;
};

TEST_F(TreeFile, LinesAreLevelNameAndLineEnd) {
  EXPECT_EQ(loaded("0/\n1bin\n1usr\n2lib\n2share\n3doc\n1var\n"),
            "/( bin usr( lib share( doc ) ) var )");
  EXPECT_EQ(last, TreeLoad::Loaded);
  EXPECT_TRUE(tree.loaded);
  EXPECT_FALSE(tree.dirty);
  EXPECT_EQ(at(tree, "/usr/share/doc")->level, 3);
}

TEST_F(TreeFile, IsWrittenInTheOrderOfNames) {
  for (const char* name : {"/b/z", "/b/y", "/a"}) grow(tree, name);
  tree.loaded = true;
  tree.dirty = true;
  EXPECT_EQ(saved(), NoVolume + "0/\n1a\n1b\n2y\n2z\n");
  EXPECT_FALSE(tree.dirty);
  EXPECT_EQ(dir.mode("tree"), 0600u);
}

TEST_F(TreeFile, TheDeepestLevelIsTheLetterO) {
  TREENODE* node = tree.makeRoot();
  for (int i = 0; i < CTree::DeepestLevel; ++i) node = tree.appendChild(node, L"d");
  tree.loaded = true;
  EXPECT_TRUE(saved().ends_with("\nnd\nod\n"));
  const std::string before = textOf(tree);
  EXPECT_EQ(loadTree(tree, dir.wide("tree")), TreeLoad::Loaded);
  EXPECT_EQ(textOf(tree), before);
}

TEST_F(TreeFile, AnotherVolumesFileIsLeftAloneAndWrittenOverByASave) {
  const std::string other = std::string("\x01\x02\0\0\0\0\0\0", 8) + "0/\n1theirs\n";
  dir.write("tree", other);
  EXPECT_EQ(loadTree(tree, dir.wide("tree")), TreeLoad::NoFile);
  EXPECT_EQ(tree.root(), nullptr);
  EXPECT_EQ(dir.read("tree"), other);
  grow(tree, "/ours");
  tree.loaded = true;
  EXPECT_EQ(saved(), NoVolume + "0/\n1ours\n");
}

TEST_F(TreeFile, TheVolumeStandsInFrontInLittleEndian) {
  tree.key.volume = 0x0102030405060708;
  grow(tree, "/a");
  tree.loaded = true;
  EXPECT_EQ(saved(),
            "\x08\x07\x06\x05\x04\x03\x02\x01"
            "0/\n1a\n");
  CTree again({L'/', 0x0102030405060708});
  EXPECT_EQ(loadTree(again, dir.wide("tree")), TreeLoad::Loaded);
  EXPECT_EQ(textOf(again), "/( a )");
}

TEST_F(TreeFile, NoFileLeavesAnEmptyTree) {
  EXPECT_EQ(loadTree(tree, dir.wide("missing")), TreeLoad::NoFile);
  EXPECT_EQ(tree.root(), nullptr);
  EXPECT_EQ(loadTree(tree, dir.wide()), TreeLoad::NoFile) << "a directory is none";
  ASSERT_EQ(mkfifo(dir.path("fifo").c_str(), 0600), 0);
  EXPECT_EQ(loadTree(tree, dir.wide("fifo")), TreeLoad::NoFile) << "and isn't waited for";
}

TEST_F(TreeFile, AFileWithoutARootLineGivesARootAlone) {
  EXPECT_EQ(loaded(""), "/");
  EXPECT_EQ(last, TreeLoad::Empty);
  EXPECT_FALSE(tree.loaded);
  EXPECT_EQ(loaded("p/\n1a\n"), "/") << "a level above 63";
  EXPECT_EQ(last, TreeLoad::Empty);
  EXPECT_EQ(loaded("\n1a\n"), "/");
  EXPECT_EQ(last, TreeLoad::Empty);
}

TEST_F(TreeFile, TheRootIsAlwaysASlash) {
  EXPECT_EQ(loaded("0C:\n1a\n"), "/( a )");
  EXPECT_EQ(loaded("5deep\n1a\n"), "/( a )");
  EXPECT_EQ(tree.root()->level, 0);
  EXPECT_TRUE(tree.root()->expanded);
}

TEST_F(TreeFile, ALevelThatJumpsIsThatOfAChild) {
  EXPECT_EQ(loaded("0/\n1a\n9b\noc\n2d\n"), "/( a( b( c ) d ) )");
  EXPECT_EQ(at(tree, "/a/b/c")->level, 3);
}

TEST_F(TreeFile, TheFirstLineThatIsNoneEndsTheReading) {
  EXPECT_EQ(loaded("0/\n1a\n0again\n1b\n"), "/( a )");
  EXPECT_EQ(loaded("0/\n1a\n\n1b\n"), "/( a )");
  EXPECT_EQ(loaded("0/\n1a\n\x7F"
                   "b\n1c\n"),
            "/( a )");
  EXPECT_EQ(loaded("0/\n1a\n 1b\n1c\n"), "/( a )");
  EXPECT_TRUE(tree.loaded) << "what was read so far is kept";
  EXPECT_EQ(loaded("0/\n1a\n1half"), "/( a )") << "a line that doesn't end";
}

TEST_F(TreeFile, WhatIsNoNameIsLeftOutWithAllBelowIt) {
  EXPECT_EQ(loaded("0/\n1\n2a\n1..\n2b\n3c\n1x/y\n2d\n1.\n1good\n2e\n"), "/( good( e ) )");
  EXPECT_EQ(loaded(std::string("0/\n1a\0b\n2c\n1d\n", 14)), "/( d )");
}

TEST_F(TreeFile, ANameThatIsThereAlreadyIsLeftOut) {
  EXPECT_EQ(loaded("0/\n1a\n2x\n1a\n2y\n1b\n"), "/( a( x ) b )");
}

TEST_F(TreeFile, NamesAreAsLongAsTheSystemsAre) {
  const std::string name(255, 'n');
  const std::string wide = std::string(600, 'w');
  EXPECT_EQ(loaded("0/\n1" + name + "\n1" + wide + "\n1b\n"), "/( " + name + " " + wide + " b )");
}

TEST_F(TreeFile, AnEndlessLineCountsUpToItsLimitAndItsRestIsNoLine) {
  const std::string text = loaded("0/\n1" + std::string(100'000, 'n') + "\n1b\n");
  EXPECT_EQ(text, "/( " + std::string(4095, 'n') + " b )");
}

TEST_F(TreeFile, NamesThatAreNoTextComeBackAsTheyWere) {
  const std::string name = "raw\xFF\xC3name";
  grow(tree, "/" + name + "/below");
  tree.loaded = true;
  EXPECT_EQ(saved(), NoVolume + "0/\n1" + name + "\n2below\n");
  EXPECT_EQ(loadTree(tree, dir.wide("tree")), TreeLoad::Loaded);
  EXPECT_EQ(textOf(tree), "/( " + name + "( below ) )");
}

TEST_F(TreeFile, ANameWithALineEndIsntWrittenNorWhatIsBelowIt) {
  grow(tree, "/two\nlines/below");
  grow(tree, "/zoo");
  tree.loaded = true;
  EXPECT_EQ(saved(), NoVolume + "0/\n1zoo\n");
}

TEST_F(TreeFile, NothingIsWrittenOfATreeThatIsntCompleteOrPrivate) {
  EXPECT_EQ(saveTree(tree, dir.wide("tree")), 0) << "no root";
  grow(tree, "/a");
  EXPECT_EQ(saveTree(tree, dir.wide("tree")), 0) << "not loaded";
  tree.loaded = true;
  tree.isPrivate = true;
  EXPECT_EQ(saveTree(tree, dir.wide("tree")), 0);
  EXPECT_FALSE(dir.exists("tree"));
}

TEST_F(TreeFile, NodesAreOpenAsTheSettingSays) {
  GlobalOptions::ExpandedTrees = false;
  loaded("0/\n1a\n2b\n");
  GlobalOptions::ExpandedTrees = true;
  EXPECT_TRUE(tree.root()->expanded);
  EXPECT_FALSE(at(tree, "/a")->expanded);
}

TEST_F(TreeFile, AnInterruptedLoadLeavesNoRoot) {
  std::string lines = "0/\n";
  for (int i = 0; i < 5000; ++i) lines += "1directory" + std::to_string(i) + "\n";
  dir.write("tree", NoVolume + lines);
  int looks = 0;
  EXPECT_EQ(loadTree(tree, dir.wide("tree"), [&looks] { return ++looks == 3; }),
            TreeLoad::Interrupted);
  EXPECT_EQ(looks, 3);
  EXPECT_EQ(tree.root(), nullptr);
  EXPECT_FALSE(tree.loaded);
}

TEST_F(TreeFile, ALineWithoutAnEndCanBeInterrupted) {
  dir.write("tree", NoVolume + "0/\n1a\n1");
  ASSERT_EQ(truncate(dir.path("tree").c_str(), off_t{1} << 40), 0);
  int looks = 0;
  EXPECT_EQ(loadTree(tree, dir.wide("tree"), [&looks] { return ++looks == 50; }),
            TreeLoad::Interrupted);
  EXPECT_EQ(looks, 50);
  EXPECT_EQ(tree.root(), nullptr);
}

TEST_F(TreeFile, TheDirectoryOfTheFileIsMadeForItsOwnerAlone) {
  grow(tree, "/a");
  tree.loaded = true;
  EXPECT_EQ(saveTree(tree, dir.wide("new/tree")), 0);
  EXPECT_EQ(dir.mode("new"), 0700u);
  EXPECT_EQ(dir.read("new/tree"), NoVolume + "0/\n1a\n");
}

TEST_F(TreeFile, LiesInItsDirectoryOrAtHome) {
  ASSERT_EQ(setenv("HOME", dir.path().c_str(), 1), 0);
  EXPECT_EQ(bytesOf(treeFilePath()), dir.path(".tdx/tdtree.dat"));
  GlobalOptions::TreeDir = L"/var/trees";
  EXPECT_EQ(bytesOf(treeFilePath()), "/var/trees/td2tree.dat");
  GlobalOptions::TreeDir = L"/var/trees/";
  EXPECT_EQ(bytesOf(treeFilePath()), "/var/trees/td2tree.dat");
  GlobalOptions::TreeDir = L"";
}

TEST_F(TreeFile, WithoutAPlaceNothingIsWrittenNorWantedAgain) {
  grow(tree, "/a");
  tree.loaded = true;
  tree.dirty = true;
  EXPECT_EQ(saveTree(tree, L""), 0);
  EXPECT_FALSE(tree.dirty);
  EXPECT_EQ(loadTree(tree, L""), TreeLoad::NoFile);
}

// ---- faults

TEST_F(TreeFile, WhateverFailsTheOldFileOrTheNewOneIsWhole) {
  const std::string old = NoVolume + "0/\n1old\n";
  const std::string fresh = NoVolume + "0/\n1new\n";
  grow(tree, "/new");
  tree.loaded = true;
  int calls;
  {
    dir.write("tree", old);
    FaultHook counting;
    ASSERT_EQ(saveTree(tree, dir.wide("tree")), 0);
    calls = counting.calls();
  }
  ASSERT_GT(calls, 5);
  int failed = 0;
  for (int number = 1; number <= calls; ++number) {
    dir.write("tree", old);
    tree.dirty = true;
    int error;
    {
      FaultHook fault(number, ENOSPC);
      error = saveTree(tree, dir.wide("tree"));
    }
    failed += error != 0;
    EXPECT_EQ(tree.dirty, error != 0) << number;
    const std::string content = dir.read("tree");
    EXPECT_TRUE(content == old || content == fresh) << number << ": " << content;
    if (error == 0) {
      EXPECT_EQ(content, fresh) << number;
    }
    EXPECT_EQ(dir.names(), (std::vector<std::string>{"tree"})) << number;
  }
  EXPECT_GT(failed, 3);
}

TEST_F(TreeFile, WhereverTheProgramIsKilledTheOldFileOrTheNewOneIsWhole) {
  const std::string old = NoVolume + "0/\n1old\n";
  const std::string fresh = NoVolume + "0/\n1new\n";
  grow(tree, "/new");
  tree.loaded = true;
  int killed = 0;
  for (int number = 1;; ++number) {
    dir.write("tree", old);
    const pid_t child = fork();
    if (child == 0) {
      Fault fault{.number = number, .reach = Fault::Reach::Kill};
      System::setPlaceHook(Fault::onCall, &fault);
      _exit(saveTree(tree, dir.wide("tree")));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    const std::string content = dir.read("tree");
    EXPECT_TRUE(content == old || content == fresh) << number << ": " << content;
    if (WEXITSTATUS(status) != Fault::Killed) break;
    ++killed;
  }
  EXPECT_GT(killed, 5);
}

TEST_F(TreeFile, AReadThatFailsKeepsWhatWasRead) {
  std::string lines = "0/\n";
  for (int i = 0; i < 20'000; ++i) lines += "1directory" + std::to_string(i) + "\n";
  dir.write("tree", NoVolume + lines);
  int reads = 0;
  System::setHook(
      [](const char* call, const char*, void* context) {
        return std::string(call) == "read" && ++*static_cast<int*>(context) == 2 ? EIO : 0;
      },
      &reads);
  const TreeLoad result = loadTree(tree, dir.wide("tree"));
  System::setHook(nullptr, nullptr);
  EXPECT_EQ(result, TreeLoad::Loaded);
  EXPECT_NE(at(tree, "/directory100"), nullptr);
  EXPECT_EQ(at(tree, "/directory19999"), nullptr);
}

// ---- any bytes

const std::string Sample = "0/\n1bin\n1home\n2anna\n3docs\n4letters\n2bert\n1usr\n2lib\n2share\n";

TEST_F(TreeFile, CutAtEveryLengthGivesABeginningOfTheTree) {
  const std::string whole = NoVolume + Sample;
  const std::string full = loaded(Sample);
  for (size_t length = 0; length <= whole.size(); ++length) {
    CTree cut;
    dir.write("tree", whole.substr(0, length));
    const TreeLoad result = loadTree(cut, dir.wide("tree"));
    EXPECT_EQ(result == TreeLoad::NoFile, length < NoVolume.size()) << length;
    EXPECT_EQ(faultOf(cut), "") << length;
    for (TREENODE* node = cut.root(); node; node = nextInSubtree(node, cut.root())) {
      EXPECT_NE(tree.find(pathOfNode(node)), nullptr) << length;
    }
  }
  EXPECT_EQ(textOf(tree), full);
}

TEST_F(TreeFile, DamagedBytesGiveSomeTreeThatCanBeWrittenAgain) {
  std::mt19937 random(7);
  const std::string whole = NoVolume + Sample;
  for (int round = 0; round < 2000; ++round) {
    std::string bytes = whole;
    const size_t damages = 1 + bytes.size() / 100;
    for (size_t i = 0; i < damages; ++i) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    dir.write("tree", bytes);
    CTree damaged;
    if (loadTree(damaged, dir.wide("tree")) != TreeLoad::Loaded) continue;
    ASSERT_EQ(faultOf(damaged), "");
    if (round % 50 != 0) continue;  // a save waits for the disk
    ASSERT_EQ(saveTree(damaged, dir.wide("again")), 0);
    CTree again;
    ASSERT_EQ(loadTree(again, dir.wide("again")), TreeLoad::Loaded);
    ASSERT_EQ(textOf(again), textOf(damaged)) << round;
  }
}

}  // namespace
