#include "archive/archive_chain.h"

#include <unistd.h>

#include "foundation/path_info.h"
#include "panel_fixture.h"
#include "panels/commands/change_directory.h"
#include "panels/model/panel_position.h"

namespace {

using Names = std::vector<std::string>;

// Files named *.zip open as archives; each opening and what else happens is written down.
class ArchiveChainTest : public PanelTest {
 protected:
  ArchiveChainTest() : panel(left()) {
    panel.path = dir.wide();
    dir.write("x.zip", "");
    dir.write("y.zip", "");
    dir.write("plain", "");
    dir.makeDir("sub");
    archiveOpener() = [this](const Westring& file, OpenArchive* parent) {
      log.push_back("open " + bytes(file) + (parent ? " in " + bytes(parent->path()) : ""));
      std::unique_ptr<OpenArchive> archive;
      if (right4(bytes(file)) == ".zip") archive = std::make_unique<FakeArchive>(file, files, &log);
      return archive;
    };
  }
  // Panels end before the log that their archives write into.
  ~ArchiveChainTest() override {
    for (Panel& side : panelPair().side) side.archive.reset();
  }
  static std::string right4(const std::string& text) {
    return text.size() < 4 ? text : text.substr(text.size() - 4);
  }
  std::string path(const std::string& name) { return dir.path(name); }

  TempDir dir;
  Panel& panel;
  FakeArchive::Log log;
  Names files = {"a", "d/b", "d/inner.zip"};
};

}  // namespace

TEST(ArchivePaths, LieInADirectoryByWholeComponents) {
  EXPECT_TRUE(liesIn(L"/a/b", L"/a"));
  EXPECT_TRUE(liesIn(L"/a", L"/a"));
  EXPECT_TRUE(liesIn(L"/a", L"/"));
  EXPECT_FALSE(liesIn(L"/ab", L"/a"));
  EXPECT_FALSE(liesIn(L"/A/b", L"/a"));
  EXPECT_FALSE(liesIn(L"/", L"/a"));
  EXPECT_FALSE(liesIn(L"", L"/"));
}

TEST(ArchivePaths, TheInnerPathHasNoSlashesAtItsEnds) {
  const FakeArchive archive(L"/x.zip", {}, nullptr);
  EXPECT_EQ("", bytes(innerPath(archive, L"/x.zip")));
  EXPECT_EQ("", bytes(innerPath(archive, L"/x.zip/")));
  EXPECT_EQ("a/b", bytes(innerPath(archive, L"/x.zip/a/b")));
  EXPECT_EQ("a", bytes(innerPath(archive, L"/x.zip/a/")));
}

TEST_F(ArchiveChainTest, WithoutAReaderNothingIsAnArchive) {
  archiveOpener() = nullptr;
  EXPECT_FALSE(changeDirectory(panel, L"x.zip"));
  EXPECT_FALSE(attachArchive(panel, L"x.zip"));
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(ArchiveChainTest, WhatWasExplainedIsNotTriedInAnotherMeaning) {
  int opened = 0;
  archiveOpener() = [&opened](const Westring&, OpenArchive*) {
    ++opened;
    return ArchiveAttempt(Refusal::Explained);
  };
  EXPECT_FALSE(goToPath(panel, L"x.zip"));
  EXPECT_EQ(opened, 1);
  EXPECT_FALSE(changeDirectory(panel, L"x.zip").isUnexplained());
  EXPECT_FALSE(attachArchive(panel, L"x.zip").isUnexplained());
  EXPECT_TRUE(changeDirectory(panel, L"nowhere").isUnexplained());
}

TEST_F(ArchiveChainTest, APlainFileInThePathIsOpenedAndTheWalkGoesOnInside) {
  EXPECT_TRUE(changeDirectory(panel, L"x.zip/d"));
  EXPECT_EQ((Names{"open " + path("x.zip"), "list d"}), log);
  EXPECT_EQ(path("x.zip/d"), bytes(panel.path));
  ASSERT_TRUE(panel.archive);
  enterPath(panel, L"");
  EXPECT_EQ((Names{"..", "b", "inner.zip"}), listed(panel));
  EXPECT_EQ(dir.path(), bytes(physicalDirectory(panel)));
  EXPECT_EQ(path("x.zip/d"), bytes(shownPath(panel)));
  EXPECT_EQ(dir.path(), bytes(currentDir()));
}

TEST_F(ArchiveChainTest, DirectoriesAreTestedBeforeArchives) {
  dir.makeDir("dir.zip");
  EXPECT_TRUE(changeDirectory(panel, L"dir.zip"));
  EXPECT_EQ((Names{}), log);
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(ArchiveChainTest, AnArchiveInAnArchiveOpensWithItsParent) {
  EXPECT_TRUE(changeDirectory(panel, L"x.zip/d/inner.zip/d"));
  EXPECT_EQ((Names{"open " + path("x.zip"), "list d", "list d/inner.zip",
                   "open " + path("x.zip/d/inner.zip") + " in " + path("x.zip"), "list d"}),
            log);
  ASSERT_TRUE(panel.archive && panel.archive->parent);
  EXPECT_EQ(path("x.zip"), bytes(outermostArchive(*panel.archive).path()));
  EXPECT_EQ(dir.path(), bytes(physicalDirectory(panel)));
}

TEST_F(ArchiveChainTest, AFailedWalkBringsBackTheArchivesThatWereOpen) {
  EXPECT_TRUE(changeDirectory(panel, L"x.zip/d"));
  const OpenArchive* before = panel.archive.get();
  log.clear();
  EXPECT_FALSE(changeDirectory(panel, dir.wide("y.zip/none")));
  EXPECT_EQ(before, panel.archive.get());
  EXPECT_EQ(path("x.zip/d"), bytes(panel.path));
  EXPECT_EQ("open " + path("y.zip"), log[0]);
  EXPECT_EQ("close " + path("y.zip"), log.back());
  EXPECT_FALSE(changeDirectory(panel, dir.wide("plain")));
  EXPECT_EQ(before, panel.archive.get());
}

TEST_F(ArchiveChainTest, LeavingClosesFromTheInsideOut) {
  EXPECT_TRUE(changeDirectory(panel, L"x.zip/d/inner.zip"));
  log.clear();
  EXPECT_TRUE(changeDirectory(panel, dir.wide("sub")));
  EXPECT_EQ((Names{"close " + path("x.zip/d/inner.zip"), "close " + path("x.zip")}), log);
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(ArchiveChainTest, MovingInsideKeepsTheArchiveOpen) {
  EXPECT_TRUE(changeDirectory(panel, L"x.zip/d"));
  log.clear();
  EXPECT_TRUE(changeDirectory(panel, L".."));
  EXPECT_EQ((Names{}), log);
  EXPECT_EQ(path("x.zip"), bytes(panel.path));
  EXPECT_TRUE(panel.archive);
}

TEST_F(ArchiveChainTest, AnArchiveWhoseFileHasGoneIsClosedAndNotTrusted) {
  EXPECT_TRUE(changeDirectory(panel, L"x.zip/d"));
  unlink(path("x.zip").c_str());
  EXPECT_FALSE(changeDirectory(panel, dir.wide("x.zip/d/b")));
  EXPECT_FALSE(changeDirectory(panel, dir.wide("x.zip")));
  EXPECT_TRUE(changeDirectory(panel, dir.wide("sub")));
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(ArchiveChainTest, OfAnArchiveWhoseFileHasGoneTheDirectoryIsRead) {
  ASSERT_TRUE(goToPath(panel, L"x.zip/d/inner.zip"));
  ASSERT_EQ(0, unlink(path("x.zip").c_str()));
  enterPath(panel, L"");
  EXPECT_EQ(nullptr, panel.archive);
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_EQ((Names{"..", "sub", "plain", "y.zip"}), listed(panel));
}

TEST_F(ArchiveChainTest, ANeighbourWithALongerNameIsOutside) {
  dir.makeDir("x.zip2");
  EXPECT_TRUE(changeDirectory(panel, L"x.zip"));
  EXPECT_TRUE(changeDirectory(panel, dir.wide("x.zip2")));
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(ArchiveChainTest, EnteringAFileShowsItsRootAndUpShowsTheFile) {
  enterPath(panel, L"");
  selectName(panel, L"x.zip");
  ASSERT_TRUE(attachArchive(panel, L"x.zip"));
  enterPath(panel, L"x.zip");
  EXPECT_EQ((Names{"..", "a", "d"}), [&] {
    Names names = listed(panel);
    std::sort(names.begin(), names.end());
    return names;
  }());
  enterPath(panel, L"d");
  EXPECT_EQ((Names{"..", "b", "inner.zip"}), listed(panel));
  enterPath(panel, L"..");
  EXPECT_EQ("d", currentName(panel));
  enterPath(panel, L"..");
  EXPECT_EQ(dir.path(), bytes(panel.path));
  EXPECT_EQ("x.zip", currentName(panel));
  EXPECT_EQ(nullptr, panel.archive);
}

TEST_F(ArchiveChainTest, AFileThatIsNoArchiveIsNotAttached) {
  EXPECT_FALSE(attachArchive(panel, L"plain"));
  EXPECT_EQ(nullptr, panel.archive);
  EXPECT_FALSE(changeDirectory(panel, L"plain"));
  EXPECT_EQ((Names{"open " + path("plain"), "open " + path("plain")}), log);
}
