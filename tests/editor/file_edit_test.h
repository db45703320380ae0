#pragma once

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "editor/edit_test.h"
#include "editor/text/file_status_store.h"
#include "editor/window/editor.h"
#include "editor/window/load_file.h"
#include "editor/window/save_file.h"
#include "foundation/data_paths.h"
#include "foundation/signals.h"
#include "support/files.h"
#include "support/temp_dir.h"

// What the screen will show, and the keys that answer it.
struct Reply {
  std::string shown;
  std::vector<Key::Code> keys;
};

// An edit of a file on the disk. Questions are answered once they show.
class FileEditTest : public EditTest {
 protected:
  void SetUp() override {
    EditTest::SetUp();
    fileStatusStore().clear();
    setConfigurationFile(userFiles.wide("td.ini"));
  }
  void TearDown() override {
    setConfigurationFile(L"");
    EditTest::TearDown();
  }

  std::string path(const std::string& name) const { return dir.path() + "/" + name; }
  std::string file(const std::string& name, const std::string& content) const {
    writeFile(path(name), content);
    return path(name);
  }

  // Runs `work`; another thread waits for each text to show and answers it. What came up and in
  // what order is thereby tested, too.
  void answering(const std::vector<Reply>& replies, const std::function<void()>& work) {
    std::thread user([&] {
      for (const Reply& reply : replies) {
        const bool came =
            waitUntil([&] { return screenText().find(reply.shown) != std::string::npos; });
        EXPECT_TRUE(came) << reply.shown << "\n" << screenText();
        for (const Key::Code key : reply.keys) queueKey(key);
        if (!came) {  // nothing may wait for ever
          requestEnd();
          console->events().wake();
          return;
        }
        waitUntil([&] { return console->eventCount() == 0; });
      }
    });
    work();
    user.join();
    forgetEndRequest();
    drainEvents();
  }

  struct FileEdit : Edit {
    explicit FileEdit(const std::string& path, const EditStart& start = {})
        : Edit(""), keptPath(path) {
      editor.file.name = decodeFileName(path.c_str());
      loaded = loadFile(editor, start);
      editor.paint();
    }
    void typeText(const std::string& text) {
      for (const char c : text) key(Key::Code(c));
    }
    std::string keptPath;
    bool loaded = false;
  };

  const TempDir dir;
  const TempDir userFiles;  // where the files of the program's user lie
};
