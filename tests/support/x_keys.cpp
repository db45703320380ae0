#include "support/x_keys.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <stdexcept>

#include "console/console.h"
#include "console/key_codes.h"
#include "foundation/utf8.h"
#include "support/test_end.h"
#include "support/wait_until.h"
#include "support/x_display.h"

namespace {
constexpr KeySym UnicodeSymbols = 0x01000000;

KeySym symbolOf(wchar_t character) {
  if (character == L'\n') return XK_Return;
  const auto value = static_cast<KeySym>(character);
  return value < 0x100 ? value : UnicodeSymbols | value;
}
}  // namespace

struct XKeys::Impl {
  Display* display = nullptr;
  std::vector<KeyCode> spareKeys;  // get the symbols that the layout lacks, each in its turn
  size_t nextSpare = 0;
  Window helper = 0;  // owns and receives the clipboard

  void sync() const { XSync(display, False); }

  // Tells who asked for a selection where it now is.
  void answer(const XSelectionRequestEvent& request, Atom property) const {
    XEvent answer{};
    answer.xselection.type = SelectionNotify;
    answer.xselection.requestor = request.requestor;
    answer.xselection.selection = request.selection;
    answer.xselection.target = request.target;
    answer.xselection.time = request.time;
    answer.xselection.property = property;
    XSendEvent(display, request.requestor, False, NoEventMask, &answer);
    sync();
  }

  void fake(KeyCode key, bool down) const {
    XTestFakeKeyEvent(display, key, down ? True : False, CurrentTime);
    sync();
  }

  void findSpareKeys() {
    int first = 0, last = 0, width = 0;
    XDisplayKeycodes(display, &first, &last);
    KeySym* map =
        XGetKeyboardMapping(display, static_cast<KeyCode>(first), last - first + 1, &width);
    for (int key = last; key >= first; --key) {
      bool empty = true;
      for (int i = 0; i < width; ++i) empty &= map[(key - first) * width + i] == NoSymbol;
      if (empty) spareKeys.push_back(static_cast<KeyCode>(key));
    }
    XFree(map);
  }

  // The key of a symbol and whether it needs Shift.
  KeyCode keyOf(KeySym symbol, bool& shift) {
    shift = false;
    const KeyCode known = XKeysymToKeycode(display, symbol);
    if (known != 0) {
      if (XkbKeycodeToKeysym(display, known, 0, 0) == symbol) return known;
      if (XkbKeycodeToKeysym(display, known, 0, 1) == symbol) {
        shift = true;
        return known;
      }
    }
    // The program reads the layout when it meets the key, so a key isn't given another symbol soon.
    const KeyCode spare = spareKeys.at(nextSpare++ % spareKeys.size());
    KeySym symbols[2] = {symbol, symbol};
    XChangeKeyboardMapping(display, spare, 2, symbols, 1);
    sync();
    return spare;
  }
};

XKeys& XKeys::get() {
  static std::unique_ptr<XKeys> keys;
  if (!keys) {
    keys.reset(new XKeys());
    atTestEnd([] { keys.reset(); });
  }
  return *keys;
}

XKeys::XKeys() : impl_(std::make_unique<Impl>()) {
  impl_->display = XOpenDisplay(XDisplay::name().c_str());
  if (!impl_->display) throw std::runtime_error("no X display for the keys");
  impl_->findSpareKeys();
  impl_->helper =
      XCreateSimpleWindow(impl_->display, DefaultRootWindow(impl_->display), 0, 0, 1, 1, 0, 0, 0);
}

XKeys::~XKeys() {
  XCloseDisplay(impl_->display);
}

void XKeys::keyDown(unsigned long symbol) {
  bool shift = false;
  impl_->fake(impl_->keyOf(symbol, shift), true);
}

void XKeys::keyUp(unsigned long symbol) {
  bool shift = false;
  impl_->fake(impl_->keyOf(symbol, shift), false);
}

void XKeys::press(unsigned long symbol, const std::vector<unsigned long>& modifiers) {
  bool shift = false;
  const KeyCode key = impl_->keyOf(symbol, shift);
  std::vector<unsigned long> held = modifiers;
  const bool given = std::find(held.begin(), held.end(), XK_Shift_L) != held.end();
  if (shift && !given) held.push_back(XK_Shift_L);
  for (const unsigned long modifier : held) keyDown(modifier);
  impl_->fake(key, true);
  impl_->fake(key, false);
  for (auto it = held.rbegin(); it != held.rend(); ++it) keyUp(*it);
}

void XKeys::type(const std::string& utf8Text) {
  const Westring text = fromUtf8(utf8Text.c_str());
  for (const wchar_t* p = text.data(); *p != 0; ++p) {
    press(symbolOf(*p));
  }
}

void XKeys::pressDigitKey(int digit, const std::vector<unsigned long>& modifiers) {
  const auto key = static_cast<KeyCode>(digit == 0 ? HardwareKey::LastDigit
                                                   : HardwareKey::FirstDigit + digit - 1);
  for (const unsigned long modifier : modifiers) keyDown(modifier);
  impl_->fake(key, true);
  impl_->fake(key, false);
  for (auto it = modifiers.rbegin(); it != modifiers.rend(); ++it) keyUp(*it);
}

void XKeys::mapSecondLayout(unsigned long symbol, unsigned long second) {
  KeySym upper = NoSymbol, lower = NoSymbol;
  XConvertCase(symbol, &lower, &upper);
  mapKey(symbol, {lower, upper, second, second});
}

void XKeys::mapKey(unsigned long symbol, std::array<unsigned long, 4> symbols) {
  XChangeKeyboardMapping(impl_->display, XKeysymToKeycode(impl_->display, symbol),
                         static_cast<int>(symbols.size()), symbols.data(), 1);
  impl_->sync();
}

void XKeys::switchLayout(unsigned group) {
  XkbLockGroup(impl_->display, XkbUseCoreKbd, group);
  impl_->sync();
}

void XKeys::moveTo(int x, int y) {
  int left = 0, top = 0;
  Window child = 0;
  XTranslateCoordinates(impl_->display, console->windowId(), DefaultRootWindow(impl_->display), 0,
                        0, &left, &top, &child);
  const int w = console->cellWidth(), h = console->cellHeight();
  XTestFakeMotionEvent(impl_->display, -1, left + x * w + w / 2, top + y * h + h / 2, CurrentTime);
  impl_->sync();
}

void XKeys::buttonDown(int button) {
  XTestFakeButtonEvent(impl_->display, static_cast<unsigned>(button), True, CurrentTime);
  impl_->sync();
}

void XKeys::buttonUp(int button) {
  XTestFakeButtonEvent(impl_->display, static_cast<unsigned>(button), False, CurrentTime);
  impl_->sync();
}

void XKeys::click(int x, int y, int button) {
  moveTo(x, y);
  buttonDown(button);
  buttonUp(button);
}

void XKeys::doubleClick(int x, int y, int button) {
  click(x, y, button);
  click(x, y, button);
}

void XKeys::wheel(int x, int y, int direction) {
  click(x, y, direction > 0 ? 4 : 5);
}

bool XKeys::waitForFocus(unsigned long window, int timeoutMs) {
  return waitUntil(
      [&] {
        Window focused = 0;
        int revert = 0;
        XGetInputFocus(impl_->display, &focused, &revert);
        return focused == window;
      },
      timeoutMs);
}

void XKeys::takeFocusAway() {
  XSetInputFocus(impl_->display, None, RevertToNone, CurrentTime);
  impl_->sync();
}

void XKeys::giveFocus(unsigned long window) {
  XSetInputFocus(impl_->display, window, RevertToParent, CurrentTime);
  impl_->sync();
}

void XKeys::closeWindow(unsigned long window) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(impl_->display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] =
      static_cast<long>(XInternAtom(impl_->display, "WM_DELETE_WINDOW", False));
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(impl_->display, window, False, NoEventMask, &event);
  impl_->sync();
}

std::vector<unsigned> XKeys::windowPixels(unsigned long window, int& width, int& height) {
  // The window must not change its size between the two questions.
  XGrabServer(impl_->display);
  XWindowAttributes attributes{};
  XGetWindowAttributes(impl_->display, window, &attributes);
  width = attributes.width;
  height = attributes.height;
  const bool onScreen = attributes.map_state == IsViewable && attributes.x >= 0 &&
                        attributes.y >= 0 &&
                        attributes.x + width <= WidthOfScreen(attributes.screen) &&
                        attributes.y + height <= HeightOfScreen(attributes.screen);
  XImage* image = nullptr;
  if (onScreen) {
    image = XGetImage(impl_->display, window, 0, 0, static_cast<unsigned>(width),
                      static_cast<unsigned>(height), AllPlanes, ZPixmap);
  }
  XUngrabServer(impl_->display);
  impl_->sync();
  if (!image) return {};
  std::vector<unsigned> pixels;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      pixels.push_back(static_cast<unsigned>(XGetPixel(image, x, y) & 0xFFFFFF));
    }
  }
  XDestroyImage(image);
  return pixels;
}

std::string XKeys::windowTitle(unsigned long window) {
  Atom type = 0;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char* data = nullptr;
  const Atom name = XInternAtom(impl_->display, "_NET_WM_NAME", False);
  const Atom utf8 = XInternAtom(impl_->display, "UTF8_STRING", False);
  XGetWindowProperty(impl_->display, window, name, 0, 1024, False, utf8, &type, &format, &count,
                     &rest, &data);
  std::string title;
  if (data) title.assign(reinterpret_cast<char*>(data), count);
  if (data) XFree(data);
  return title;
}

std::vector<std::pair<int, int>> XKeys::iconSizes(unsigned long window) {
  console->picture();  // an answer of the server: what was asked before is done
  constexpr long Most = 1 << 20;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(impl_->display, window, XInternAtom(impl_->display, "_NET_WM_ICON", False), 0,
                     Most, False, XA_CARDINAL, &type, &format, &count, &rest, &data);
  const auto* words = reinterpret_cast<const unsigned long*>(data);
  std::vector<std::pair<int, int>> sizes;
  for (unsigned long at = 0; at + 2 <= count; at += 2 + words[at] * words[at + 1]) {
    sizes.emplace_back(static_cast<int>(words[at]), static_cast<int>(words[at + 1]));
  }
  if (data) XFree(data);
  return sizes;
}

int XKeys::bellsOf(const std::function<void()>& action) {
  int firstEvent = 0;
  XkbQueryExtension(impl_->display, nullptr, &firstEvent, nullptr, nullptr, nullptr);
  XkbSelectEvents(impl_->display, XkbUseCoreKbd, XkbBellNotifyMask, XkbBellNotifyMask);
  impl_->sync();
  action();
  console->picture();  // an answer of the server: what was asked before is done
  impl_->sync();
  XkbSelectEvents(impl_->display, XkbUseCoreKbd, XkbBellNotifyMask, 0);
  int bells = 0;
  for (XEvent event; XCheckTypedEvent(impl_->display, firstEvent, &event);) {
    if (reinterpret_cast<const XkbAnyEvent&>(event).xkb_type == XkbBellNotify) ++bells;
  }
  return bells;
}

std::string XKeys::readClipboard(int timeoutMs) {
  Display* display = impl_->display;
  const Atom selection = XInternAtom(display, "CLIPBOARD", False);
  const Atom utf8 = XInternAtom(display, "UTF8_STRING", False);
  const Atom property = XInternAtom(display, "TD_TEST", False);
  XConvertSelection(display, selection, utf8, property, impl_->helper, CurrentTime);
  impl_->sync();
  XEvent event;
  const bool answered = waitUntil(
      [&] { return XCheckTypedEvent(display, SelectionNotify, &event) == True; }, timeoutMs);
  if (!answered || event.xselection.property == None) return {};
  Atom type = 0;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(display, impl_->helper, property, 0, 1 << 20, True, utf8, &type, &format,
                     &count, &rest, &data);
  std::string text;
  if (data) text.assign(reinterpret_cast<char*>(data), count);
  if (data) XFree(data);
  return text;
}

void XKeys::becomeClipboardManager() {
  const Atom manager = XInternAtom(impl_->display, "CLIPBOARD_MANAGER", False);
  XSetSelectionOwner(impl_->display, manager, impl_->helper, CurrentTime);
  impl_->sync();
}

std::string XKeys::takeClipboardOver(ManagerAnswer answer) {
  Display* display = impl_->display;
  XEvent event;
  if (!waitUntil([&] { return XCheckTypedEvent(display, SelectionRequest, &event) == True; })) {
    return "nobody asked";
  }
  const std::string text = readClipboard();
  if (answer == ManagerAnswer::Given) impl_->answer(event.xselectionrequest, None);
  return text;
}

void XKeys::ownClipboard(const std::string& utf8Text, int serveMs) {
  Display* display = impl_->display;
  const Atom selection = XInternAtom(display, "CLIPBOARD", False);
  const Atom utf8 = XInternAtom(display, "UTF8_STRING", False);
  XSetSelectionOwner(display, selection, impl_->helper, CurrentTime);
  impl_->sync();
  waitUntil(
      [&] {
        XEvent event;
        if (!XCheckTypedEvent(display, SelectionRequest, &event)) return false;
        const XSelectionRequestEvent& request = event.xselectionrequest;
        const bool known = request.target == utf8;
        if (known) {
          XChangeProperty(display, request.requestor, request.property, utf8, 8, PropModeReplace,
                          reinterpret_cast<const unsigned char*>(utf8Text.data()),
                          static_cast<int>(utf8Text.size()));
        }
        impl_->answer(request, known ? request.property : None);
        return known;
      },
      serveMs);
}
