#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <thread>
#include <vector>

#include "editor/text/file_status_store.h"
#include "editor/text/search_values.h"
#include "foundation/utf8.h"
#include "support/console_test.h"
#include "support/temp_dir.h"
#include "viewer/file_viewer.h"

// What the screen showed at one moment.
class Shot {
 public:
  Shot() : cells_(console->getCells(0, 0, console->columns(), console->rows())) {}

  const Cell& at(int x, int y) const {
    return cells_[static_cast<size_t>(y) * static_cast<size_t>(columns_) + static_cast<size_t>(x)];
  }
  std::string text(int x, int y, int w) const {
    std::wstring result;
    for (int i = 0; i < w; ++i) result += at(x + i, y).ch;
    return toDisplayUtf8(result.c_str()).data();
  }
  // Without blanks at its end.
  std::string row(int y) const {
    std::string result = text(0, y, columns_);
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
  }
  // The rows of the page down to the last one that isn't blank.
  std::vector<std::string> page() const {
    std::vector<std::string> result;
    for (int y = 1; y < rows_ - 1; ++y) result.push_back(row(y));
    while (!result.empty() && result.back().empty()) result.pop_back();
    return result;
  }
  std::string percent() const { return text(columns_ - 7, 0, 7); }
  std::string label(int number) const {
    const int width = columns_ / 10;
    std::string result = text((number - 1) * width, rows_ - 1, width);
    result.erase(result.find_last_not_of(' ') + 1);
    return result;
  }

 private:
  int columns_ = console->columns();
  int rows_ = console->rows();
  std::vector<Cell> cells_;
};

// The viewer on the real console: keys are queued, and every picture that it draws is kept.
class ViewerTest : public ConsoleTest {
 protected:
  class Recorder : public CViewer {
   public:
    using CViewer::CViewer;
    std::vector<Shot> shots;  // one before each wait
    std::function<void(size_t shots)> afterShot;

   protected:
    void draw() override {
      CViewer::draw();
      shots.emplace_back();
      if (afterShot) afterShot(shots.size());
    }
  };

  void SetUp() override {
    ConsoleTest::SetUp();
    fileStatusStore().clear();
    searchValues() = SearchValues();
  }

  // Views a file of this content: the pictures at the start and after each of the keys.
  std::vector<Shot> view(const std::string& content, std::initializer_list<Key::Code> keys = {},
                         int64_t position = AnyPosition) {
    dir.write("file", content);
    return viewAgain(keys, position);
  }
  // The same with the file as it is.
  std::vector<Shot> viewAgain(std::initializer_list<Key::Code> keys = {},
                              int64_t position = AnyPosition) {
    for (Key::Code key : keys) queueKey(key);
    queueKey(Key::F10);
    Recorder viewer(dir.wide("file"));
    viewer.afterShot = afterShot;
    EXPECT_EQ(viewer.openResult(), 0);
    left = viewer.view(position);
    topLine = viewer.topLine();
    return viewer.shots;
  }
  // The picture after the last key.
  Shot last(const std::string& content, std::initializer_list<Key::Code> keys = {},
            int64_t position = AnyPosition) {
    return view(content, keys, position).back();
  }

  // "1\n2\n...": as many lines, each its number.
  static std::string numbered(int lines) {
    std::string result;
    for (int i = 1; i <= lines; ++i) result += std::to_string(i) + "\n";
    return result;
  }

  TempDir dir;
  std::function<void(size_t shots)> afterShot;  // something else that happens, before the next key
  Key::Code left;                               // what the viewer was left with
  int64_t topLine = 0;
};
