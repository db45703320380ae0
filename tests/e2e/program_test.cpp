#include "e2e/program_test.h"

#include <cstdlib>

#include "commander/program.h"
#include "console/console.h"
#include "foundation/signals.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "support/x_display.h"

void ProgramTest::SetUp() {
  setenv("HOME", home_.path().c_str(), 1);
  setenv("LANG", "C.UTF-8", 1);
  setenv("LC_ALL", "C.UTF-8", 1);
  XDisplay::ownName();
}

void ProgramTest::TearDown() {
  if (HasFailure() && console) fprintf(stderr, "the screen:\n%s\n", screen().c_str());
  if (!program_.joinable()) return;
  requestEnd();
  program_.join();
}

void ProgramTest::launch(std::vector<std::string> arguments) {
  arguments_ = std::move(arguments);
  arguments_.insert(arguments_.begin(), "td");
  program_ = std::thread([this] {
    std::vector<char*> pointers;
    for (std::string& argument : arguments_) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    status_ = runProgram(static_cast<int>(arguments_.size()), pointers.data());
  });
}

void ProgramTest::start(const std::vector<std::string>& moreArguments) {
  std::vector<std::string> arguments{"-l", left_.path(), "-r", right_.path()};
  arguments.insert(arguments.end(), moreArguments.begin(), moreArguments.end());
  startPlain(arguments);
}

void ProgramTest::startPlain(const std::vector<std::string>& arguments, FirstScreen first) {
  launch(arguments);
  const std::string text = first == FirstScreen::Panels ? "10Quit" : "OK";
  ASSERT_TRUE(waitUntil([&] { return console && shows(text); })) << "no first screen";
  ASSERT_TRUE(keys().waitForFocus(console->windowId()));
}

void ProgramTest::startAlone(const std::vector<std::string>& arguments, const std::string& text) {
  launch(arguments);
  ASSERT_TRUE(waitUntil([&] { return console && shows(text); })) << "never shown: " << text << "\n"
                                                                 << screen();
  ASSERT_TRUE(keys().waitForFocus(console->windowId()));
}

int ProgramTest::runToEnd(const std::vector<std::string>& arguments) {
  launch(arguments);
  return waitForEnd();
}

int ProgramTest::waitForEnd() {
  program_.join();
  return status_;
}

int ProgramTest::quit() {
  press(XK_F10);
  expectText("Are you sure you want to exit");
  if (!shows("Are you sure you want to exit")) return -1;
  press(XK_Return);
  return waitForEnd();
}

std::string ProgramTest::row(int x, int y, int w) const {
  if (!console) return "";
  std::vector<Cell> cells = console->getCells(x, y, w, 1);
  Westring text;
  for (const Cell& cell : cells) text += cell.ch;
  return toUtf8(text).data();
}

std::string ProgramTest::row(int y) const {
  return console ? row(0, y, console->columns()) : "";
}

std::string ProgramTest::screen() const {
  std::string text;
  for (int y = 0; console && y < console->rows(); ++y) text += row(y) + "\n";
  return text;
}

int ProgramTest::attrAt(int x, int y) const {
  return console->getCells(x, y, 1, 1)[0].attr;
}

bool ProgramTest::shows(const std::string& text) const {
  return screen().find(text) != std::string::npos;
}

void ProgramTest::expectText(const std::string& text) {
  EXPECT_TRUE(waitUntil([&] { return shows(text); })) << "never shown: " << text << "\n"
                                                      << screen();
}

void ProgramTest::expectNoText(const std::string& text) {
  EXPECT_TRUE(waitUntil([&] { return !shows(text); })) << "still shown: " << text << "\n"
                                                       << screen();
}

void ProgramTest::expectSoon(const std::string& what, const std::function<bool()>& condition) {
  EXPECT_TRUE(waitUntil(condition)) << "never happened: " << what << "\n" << screen();
}

void ProgramTest::expectAwaited() {
  EXPECT_TRUE(waitUntil([&] { return console && console->events().isAwaited(); }))
      << "the program doesn't wait for a key";
}

std::string ProgramTest::entryUnderBar() const {
  for (int y = 1; y < console->rows() - 2; ++y) {
    for (int x = 0; x < console->columns(); ++x) {
      int attr = attrAt(x, y);
      bool bar = attr == colourOf(Colour::Highlight) || attr == colourOf(Colour::HighlightTagged) ||
                 attr == colourOf(Colour::DirectoryHigh);
      if (!bar) continue;
      std::string text = row(x, y, 13);
      size_t end = text.find_last_not_of(' ');
      return text.substr(0, end + 1);
    }
  }
  return "";
}

void ProgramTest::expectCursorOn(const std::string& name) {
  EXPECT_TRUE(waitUntil([&] { return entryUnderBar() == name; }))
      << "the bar is on \"" << entryUnderBar() << "\", not on \"" << name << '"';
}

void ProgramTest::moveTo(const std::string& name) {
  press(XK_Home);
  expectCursorOn("..");
  // A key is pressed only when the one before has been seen, or the bar would run past the name.
  while (entryUnderBar() != name) {
    const std::string before = entryUnderBar();
    press(XK_Down);
    const auto moved = [&] { return !entryUnderBar().empty() && entryUnderBar() != before; };
    if (!waitUntil(moved)) break;
    expectAwaited();  // before that the bar may be half drawn
  }
  expectCursorOn(name);
}
