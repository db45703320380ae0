#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <memory>

#include "support/console_test.h"
#include "support/temp_dir.h"
#include "terminal/ansi_emulator.h"

// An emulator on the console, which is blank with the cursor at the top left. What it sends to its
// command can be read back.
class EmulatorTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    ASSERT_EQ(pipe2(keys, O_CLOEXEC | O_NONBLOCK), 0);
    input = std::make_unique<ChildInput>(keys[1]);
    emulator = std::make_unique<CAnsiTerminalEmulator>(*console, *input, logPath.c_str());
  }
  void TearDown() override {
    emulator.reset();
    input.reset();
    close(keys[0]);
    close(keys[1]);
    ConsoleTest::TearDown();
  }

  void feed(std::string_view bytes) { emulator->write(bytes); }
  // Feeds from a cursor position on an untouched attribute.
  void feedAt(int x, int y, std::string_view bytes) {
    console->setCursorPos(x, y);
    feed(bytes);
  }
  std::string cursor() const {
    const CursorPos at = console->getCursorPos();
    return std::to_string(at.x) + "," + std::to_string(at.y);
  }
  // The rows of the screen show their numbers.
  void numberRows() {
    for (int y = 0; y < console->rows(); ++y) {
      console->writeWide(0, y, (std::to_wstring(y) + L"   ").c_str(), 7);
    }
  }
  std::string startOf(int y) const { return rowText(0, y, 3); }
  std::string logText() const { return files.read("log"); }
  std::string sent() const {
    char buffer[4096];
    const ssize_t got = read(keys[0], buffer, sizeof buffer);
    return got > 0 ? std::string(buffer, static_cast<size_t>(got)) : "";
  }

  TempDir files;
  std::string logPath = files.path("log");
  int keys[2] = {-1, -1};
  std::unique_ptr<ChildInput> input;
  std::unique_ptr<CAnsiTerminalEmulator> emulator;
};
