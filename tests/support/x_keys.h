#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Presses real keys and mouse buttons at the X server of the test, from a connection of its own.
// Key symbols are those of the X headers. Each call returns when the server has taken the events;
// the program sees them soon after.
class XKeys {
 public:
  static XKeys& get();
  ~XKeys();

  // A whole key stroke; `modifiers` are key symbols held meanwhile, pressed in order. Shift is held
  // too where the layout needs it for the symbol.
  void press(unsigned long symbol, const std::vector<unsigned long>& modifiers = {});
  void keyDown(unsigned long symbol);
  void keyUp(unsigned long symbol);
  // Shift is held where the layout needs it; a character that the layout lacks gets a key for a
  // while.
  void type(const std::string& utf8Text);
  // A key of the digit row by its place on the keyboard: 1 to 9, and 0.
  void pressDigitKey(int digit, const std::vector<unsigned long>& modifiers = {});

  // Gives a key a symbol in a second layout, and switches between the first (0) and the second (1).
  void mapSecondLayout(unsigned long symbol, unsigned long second);
  // The key of `symbol` gets other ones: plain and with Shift, in the first layout and the second.
  void mapKey(unsigned long symbol, std::array<unsigned long, 4> symbols);
  void switchLayout(unsigned group);

  // Cells of the console. Buttons are those of X: 1 left, 2 middle, 3 right, 4 and 5 the wheel.
  void moveTo(int x, int y);
  void buttonDown(int button);
  void buttonUp(int button);
  void click(int x, int y, int button = 1);
  void doubleClick(int x, int y, int button = 1);
  void wheel(int x, int y, int direction);  // above 0 up

  bool waitForFocus(unsigned long window, int timeoutMs = 10000);
  void takeFocusAway();  // nobody has the keyboard
  void giveFocus(unsigned long window);
  // Asks the window to close, as a window manager's button does.
  void closeWindow(unsigned long window);
  // What the screen of the window shows, 0xRRGGBB row after row; empty when it can't be read.
  std::vector<unsigned> windowPixels(unsigned long window, int& width, int& height);
  std::string windowTitle(unsigned long window);
  // Width and height of each icon that the window offers, as the server has them once the console
  // has asked for a picture.
  std::vector<std::pair<int, int>> iconSizes(unsigned long window);
  // How often the bell rings by what `action` does.
  int bellsOf(const std::function<void()>& action);
  // The selection CLIPBOARD as another program would read or own it.
  std::string readClipboard(int timeoutMs = 10000);
  void ownClipboard(const std::string& utf8Text, int serveMs);
  // The manager of the desktop's clipboard: once a program asks it to, it takes the text over. It
  // may be one that never tells the program that it has.
  enum class ManagerAnswer { Given, Forgotten };
  void becomeClipboardManager();
  std::string takeClipboardOver(ManagerAnswer answer);

 private:
  XKeys();
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
