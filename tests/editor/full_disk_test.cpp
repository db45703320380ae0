#include <optional>

#include "editor/file_edit_test.h"
#include "support/fault_hook.h"
#include "support/mounts.h"

namespace {

// A directory on a file system of its own that is full, or nearly. Where none can be mounted,
// writing says that there is no room.
class FullDisk {
 public:
  explicit FullDisk(const std::string& path)
      : mounted_(path, "size=1m"), filler_(path + "/filler") {
    if (mounted_.valid()) {
      writeFile(filler_, std::string(600'000, 'f'));
    } else {
      writing_.emplace("write", ENOSPC);
    }
  }
  void makeRoom() {
    ::unlink(filler_.c_str());
    writing_.reset();
  }

 private:
  MountedMemory mounted_;
  std::string filler_;
  std::optional<FaultHook> writing_;
};

class FullDiskTest : public FileEditTest {
 protected:
  void SetUp() override {
    FileEditTest::SetUp();
    dir.makeDir("small");
    disk.emplace(path("small"));
  }
  void TearDown() override {
    disk.reset();
    FileEditTest::TearDown();
  }

  // What is in the directory besides that which fills it.
  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> result = contents(path("small"));
    result.erase("filler");
    return result;
  }
  void expectRefused(FileEdit& edit, Key::Code save) {
    const std::string text = edit.text();
    answering({{"Error writing text file: No space left on device", {Key::Enter}}},
              [&] { edit.key(save); });
    EXPECT_TRUE(edit.editor.isModified);
    EXPECT_TRUE(edit.text() == text);
  }

  const std::string old = std::string(100'000, 'o');
  std::optional<FullDisk> disk;
};

// As many characters as find no place beside the old text any more.
void growBy(CTextEditor& editor, size_t bytes) {
  editor.change({0, 0}, {0, 0}, editor.spanOf(std::wstring(bytes, L'n')));
}

}  // namespace

TEST_F(FullDiskTest, ASavedFileStaysTheOldOneAndIsTheNewOneOnceThereIsRoom) {
  const std::string name = file("small/a.txt", old);
  FileEdit edit(name);
  growBy(edit.editor, 400'000);
  const auto before = files();
  expectRefused(edit, Key::F2);
  EXPECT_TRUE(files() == before);
  disk->makeRoom();
  edit.key(Key::F2);
  EXPECT_TRUE(readFile(name) == std::string(400'000, 'n') + old);
  EXPECT_FALSE(edit.editor.isModified);
  EXPECT_EQ(files().size(), 1U);
}

TEST_F(FullDiskTest, AFileThatIsOverwrittenIsNotBegunWithoutRoomForAllOfIt) {
  const std::string name = file("small/a.txt", old);
  ASSERT_EQ(link(name.c_str(), path("small/hard").c_str()), 0);
  FileEdit edit(name);
  // The private file finds room, what the old one must grow by doesn't.
  growBy(edit.editor, 150'000);
  const auto before = files();
  expectRefused(edit, Key::F2);
  EXPECT_TRUE(files() == before);
  disk->makeRoom();
  edit.key(Key::F2);
  EXPECT_TRUE(readFile(path("small/hard")) == std::string(150'000, 'n') + old);
  EXPECT_EQ(files().size(), 2U);
}

TEST_F(FullDiskTest, SaveAsLeavesTheOtherFileAndTheOwnOneAsTheyWere) {
  const std::string name = file("a.txt", old);
  file("small/old", "old target");
  FileEdit edit(name);
  growBy(edit.editor, 400'000);
  const std::vector<Reply> replies = {
      {" Save As ", {'s', 'm', 'a', 'l', 'l', '/', 'n', 'e', 'w', Key::Enter}},
      {"Error writing text file: No space left on device", {Key::Enter}},
      {" Save As ", {Key::Esc}}};
  answering(replies, [&] { edit.key(Key::F3); });
  EXPECT_EQ(files().size(), 1U);
  answering({{" Save As ", {'s', 'm', 'a', 'l', 'l', '/', 'o', 'l', 'd', Key::Enter}},
             {"File already exists, Overwrite?", {Key::Enter}},
             replies[1],
             replies[2]},
            [&] { edit.key(Key::F3); });
  EXPECT_EQ(readFile(path("small/old")), "old target");
  EXPECT_EQ(files().size(), 1U);
  EXPECT_TRUE(readFile(name) == old);
  EXPECT_EQ(std::string(toUtf8(edit.editor.file.name).data()), name);
  EXPECT_TRUE(edit.editor.isModified);
  disk->makeRoom();
  edit.key(Key::F2);
  EXPECT_TRUE(readFile(name) == std::string(400'000, 'n') + old);
}
