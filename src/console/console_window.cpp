#include "console/console_window.h"

#include <gdk/gdkkeysyms.h>

#include "console/key_table.h"
#include "console/toolkit.h"
#include "foundation/break_state.h"
#include "foundation/utf8.h"

// The X headers' macros would break the toolkit's, so they come last.
#include <X11/Xlib.h>
#include <gdk/gdkx.h>

namespace {
const Gdk::EventMask AreaEvents = Gdk::BUTTON_MOTION_MASK | Gdk::BUTTON_PRESS_MASK |
                                  Gdk::BUTTON_RELEASE_MASK | Gdk::KEY_PRESS_MASK |
                                  Gdk::KEY_RELEASE_MASK;

enum Button { Left = 1, Right = 2, Other = 3 };
constexpr unsigned GdkLeft = 1;
constexpr unsigned GdkRight = 3;

int buttonOf(unsigned gdkButton) {
  if (gdkButton == GdkLeft) return Left;
  return gdkButton == GdkRight ? Right : Other;
}

struct PasteRequest {
  ConsoleWindow* window;
  unsigned terminalNumber;
};

// The symbol of the key in the first layout, so that Alt and Ctrl keys work while another script is
// switched on. Shift still chooses between the key's two characters, other modifiers count for
// nothing.
unsigned baseSymbolOf(const GdkEventKey* event) {
  guint symbol = 0;
  gdk_keymap_translate_keyboard_state(gdk_keymap_get_default(), event->hardware_keycode,
                                      static_cast<GdkModifierType>(event->state & GDK_SHIFT_MASK),
                                      0, &symbol, nullptr, nullptr, nullptr);
  return symbol;
}

// Without a window manager nobody gives a window the keyboard.
bool windowManagerRuns(Display* display, int screen) {
  char selection[32];
  g_snprintf(selection, sizeof selection, "WM_S%d", screen);
  return XGetSelectionOwner(display, XInternAtom(display, selection, False)) != None;
}
}  // namespace

CConsoleDrawingArea::CConsoleDrawingArea(CEventQueue& events) : events_(events) {
  add_events(AreaEvents);
  set_double_buffered(false);
  modify_bg(Gtk::STATE_NORMAL, Gdk::Color("black"));
}

bool CConsoleDrawingArea::on_expose_event(GdkEventExpose* event) {
  if (!painter_ || !painter_->pixmap()) return true;
  GdkWindow* window = event->window;
  ObjectPtr<GdkGC> gc(gdk_gc_new(window));
  GdkRectangle* rectangles = nullptr;
  int count = 0;
  gdk_region_get_rectangles(event->region, &rectangles, &count);
  for (int i = 0; i < count; ++i) {
    const GdkRectangle& r = rectangles[i];
    gdk_draw_drawable(window, gc.get(), painter_->pixmap(), r.x, r.y, r.x, r.y, r.width, r.height);
  }
  g_free(rectangles);
  return true;
}

void CConsoleDrawingArea::put(const TEvent& event) {
  if (mouse_ == MouseInput::Queued) events_.put(event);
}

void CConsoleDrawingArea::queueMouse(EventKind kind, int button, unsigned state, double x,
                                     double y) {
  TEvent event;
  event.kind = kind;
  event.button = button;
  event.state = static_cast<int>(state) & ShiftState::Mask;
  if (painter_) {
    event.x = static_cast<int>(x) / painter_->cellWidth();
    event.y = static_cast<int>(y) / painter_->cellHeight();
  }
  put(event);
}

bool CConsoleDrawingArea::on_button_press_event(GdkEventButton* event) {
  if (event->type == GDK_BUTTON_PRESS || event->type == GDK_2BUTTON_PRESS) {
    const bool twice = event->type == GDK_2BUTTON_PRESS;
    queueMouse(twice ? EventKind::DoubleClick : EventKind::Press, buttonOf(event->button),
               event->state, event->x, event->y);
  }
  return true;
}

bool CConsoleDrawingArea::on_button_release_event(GdkEventButton* event) {
  queueMouse(EventKind::Release, buttonOf(event->button), event->state, event->x, event->y);
  return true;
}

bool CConsoleDrawingArea::on_motion_notify_event(GdkEventMotion* event) {
  int button = 0;
  if (event->state & GDK_BUTTON1_MASK) {
    button = Left;
  } else if (event->state & GDK_BUTTON3_MASK) {
    button = Right;
  }
  queueMouse(EventKind::Drag, button, event->state, event->x, event->y);
  return true;
}

bool CConsoleDrawingArea::on_scroll_event(GdkEventScroll* event) {
  if (event->direction != GDK_SCROLL_UP && event->direction != GDK_SCROLL_DOWN) return true;
  TEvent wheel;
  wheel.kind = EventKind::Wheel;
  wheel.wheel = event->direction == GDK_SCROLL_UP ? 1 : -1;
  wheel.state = static_cast<int>(event->state) & ShiftState::Mask;
  put(wheel);
  return true;
}

ConsoleWindow::ConsoleWindow(CEventQueue& events, std::atomic<int>& blinkPhase)
    : area(events), events_(events), blinkPhase_(blinkPhase) {
  set_resizable(false);
  add(area);
}

ConsoleWindow::~ConsoleWindow() = default;

void ConsoleWindow::setPixels(PixelSize size) {
  area.set_size_request(size.width, size.height);
  resize(size.width, size.height);
}

// Modifiers that changed meanwhile are told when the queue has the keyboard again.
TerminalSession* ConsoleWindow::setTerminal(std::unique_ptr<TerminalSession> session) {
  terminal_ = std::move(session);
  ++terminalNumber_;
  area.setMouse(terminal_ ? MouseInput::Dropped : MouseInput::Queued);
  if (!terminal_ && latestShiftState_ != shiftState_) {
    queueKey(Key::ShiftChanged, latestShiftState_, 0);
  }
  return terminal_.get();
}

void ConsoleWindow::queueKey(Key::Code key, int state, int hwCode) {
  TEvent event;
  event.key = key;
  event.state = state;
  event.hwCode = hwCode;
  events_.put(event);
  shiftState_ = latestShiftState_ = state;
}

void ConsoleWindow::take(Key::Code key, int state, int hwCode) {
  if (terminal_) {
    sendToTerminal(key, state);
  } else {
    queueKey(key, state, hwCode);
  }
  blinkPhase_.store(0, std::memory_order_relaxed);
}

void ConsoleWindow::sendToTerminal(Key::Code key, int state) {
  latestShiftState_ = state;
  if (key == Key::ShiftInsert) {
    paste();
  } else if (!terminal_->sendKey(key)) {
    beep();
  }
}

// Alt and a character that has no code of its own with it is Esc and the character.
void ConsoleWindow::sendWithEsc(const GdkEventKey* event) {
  const int state = static_cast<int>(event->state) & ShiftState::Mask;
  if ((state & ShiftState::Alt) == 0 || (state & ShiftState::Ctrl) != 0) return;
  const auto character = static_cast<wchar_t>(gdk_keyval_to_unicode(event->keyval));
  if (!Key::Code(character).isText() || character == Key::CtrlBackspace.character()) return;
  latestShiftState_ = state;
  const wchar_t text[] = {Key::Esc.character(), character, 0};
  if (!terminal_->sendText(text)) beep();
  blinkPhase_.store(0, std::memory_order_relaxed);
}

void ConsoleWindow::paste() {
  auto request = std::make_unique<PasteRequest>(PasteRequest{this, terminalNumber_});
  gtk_clipboard_request_text(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD), onPaste,
                             request.release());
}

// The owner of the clipboard may answer late, when another command has the keyboard or none.
void ConsoleWindow::onPaste(GtkClipboard*, const char* text, void* data) {
  const std::unique_ptr<PasteRequest> request(static_cast<PasteRequest*>(data));
  ConsoleWindow& window = *request->window;
  if (!text || !window.terminal_ || window.terminalNumber_ != request->terminalNumber) return;
  if (!window.terminal_->sendText(fromUtf8(text))) window.beep();
}

void ConsoleWindow::beep() {
  gdk_display_beep(gdk_display_get_default());
}

bool ConsoleWindow::on_key_press_event(GdkEventKey* event) {
  return handleKey(event);
}
bool ConsoleWindow::on_key_release_event(GdkEventKey* event) {
  return handleKey(event);
}

bool ConsoleWindow::handleKey(GdkEventKey* event) {
  ensureInputMethod(event->window);
  KeyInput input;
  input.symbol = event->keyval;
  input.baseSymbol = baseSymbolOf(event);
  input.state = event->state;
  input.hwCode = event->hardware_keycode;
  input.press = event->type == GDK_KEY_PRESS;
  const KeyResult result = translateKey(input);
  switch (result.action) {
    case KeyAction::Drop:
      break;
    case KeyAction::Break:
      requestBreak();
      if (terminal_ && input.press) terminal_->breakPressed();
      break;
    case KeyAction::InputMethod:
      if (!gtk_im_context_filter_keypress(imContext_.get(), event) && terminal_) {
        sendWithEsc(event);
      }
      break;
    case KeyAction::Queue:
      take(result.code, result.state, input.hwCode);
      break;
  }
  return true;
}

void ConsoleWindow::ensureInputMethod(GdkWindow* window) {
  if (imContext_) return;
  imContext_.reset(gtk_im_multicontext_new());
  gtk_im_context_set_client_window(imContext_.get(), window);
  g_signal_connect(imContext_.get(), "commit", G_CALLBACK(onCommit), this);
  gtk_im_context_focus_in(imContext_.get());
}

void ConsoleWindow::onCommit(GtkIMContext*, const char* utf8, void* self) {
  static_cast<ConsoleWindow*>(self)->commit(utf8);
}

void ConsoleWindow::commit(const char* utf8) {
  const Westring text = fromUtf8(utf8);
  for (const wchar_t* p = text.data(); *p != 0; ++p) take(*p, 0, 0);
}

void ConsoleWindow::on_realize() {
  Gtk::Window::on_realize();
  gdk_window_add_filter(get_window()->gobj(), onXEvent, nullptr);
}

// A window that another program destroys is nothing that the toolkit could go on with.
GdkFilterReturn ConsoleWindow::onXEvent(GdkXEvent* event, GdkEvent*, void*) {
  if (static_cast<XEvent*>(event)->type != DestroyNotify) return GDK_FILTER_CONTINUE;
  windowDestroyed();
  return GDK_FILTER_REMOVE;
}

// Closing the window is a key like any other: the program decides.
bool ConsoleWindow::on_delete_event(GdkEventAny*) {
  if (terminal_) {
    terminal_->closePressed();
  } else {
    queueKey(Key::F10, 0, 0);
  }
  return true;
}

bool ConsoleWindow::on_map_event(GdkEventAny* event) {
  Display* display = GDK_WINDOW_XDISPLAY(event->window);
  GdkScreen* screen = gdk_drawable_get_screen(event->window);
  if (!windowManagerRuns(display, gdk_screen_get_number(screen))) {
    gdk_error_trap_push();
    XSetInputFocus(display, GDK_WINDOW_XID(event->window), RevertToParent, CurrentTime);
    gdk_flush();
    gdk_error_trap_pop();
  }
  return Gtk::Window::on_map_event(event);
}

bool ConsoleWindow::on_focus_in_event(GdkEventFocus* event) {
  if (imContext_) gtk_im_context_focus_in(imContext_.get());
  return Gtk::Window::on_focus_in_event(event);
}

// The release of a modifier that was down when the focus went will never come.
bool ConsoleWindow::on_focus_out_event(GdkEventFocus* event) {
  if (imContext_) gtk_im_context_focus_out(imContext_.get());
  take(Key::ShiftChanged, 0, 0);
  return Gtk::Window::on_focus_out_event(event);
}
