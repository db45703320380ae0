#pragma once

#include <gtkmm/drawingarea.h>
#include <gtkmm/window.h>

#include <atomic>
#include <memory>

#include "console/events.h"
#include "console/painter.h"
#include "console/pixels.h"
#include "console/terminal_session.h"

enum class MouseInput { Dropped, Queued };

// The widget: copies the back store to the window and turns the mouse into events. Handlers run on
// the toolkit thread with the toolkit lock held.
class CConsoleDrawingArea : public Gtk::DrawingArea {
 public:
  explicit CConsoleDrawingArea(CEventQueue& events);

  void setPainter(const Painter* painter) { painter_ = painter; }
  void setMouse(MouseInput mouse) { mouse_ = mouse; }

 protected:
  bool on_expose_event(GdkEventExpose* event) override;
  bool on_button_press_event(GdkEventButton* event) override;
  bool on_button_release_event(GdkEventButton* event) override;
  bool on_motion_notify_event(GdkEventMotion* event) override;
  bool on_scroll_event(GdkEventScroll* event) override;

 private:
  void put(const TEvent& event);
  void queueMouse(EventKind kind, int button, unsigned state, double x, double y);

  CEventQueue& events_;
  const Painter* painter_ = nullptr;
  MouseInput mouse_ = MouseInput::Queued;
};

// The top-level window: keys, text from the input method, the close button, the focus.
class ConsoleWindow : public Gtk::Window {
 public:
  // A key or committed text sets `blinkPhase` to 0.
  ConsoleWindow(CEventQueue& events, std::atomic<int>& blinkPhase);
  ~ConsoleWindow() override;

  CConsoleDrawingArea area;

  void setPixels(PixelSize size);
  // Who gets the keys instead of the queue, owned from then on and given back; null for nobody. The
  // one before is deleted. Under the toolkit lock.
  TerminalSession* setTerminal(std::unique_ptr<TerminalSession> session);

 protected:
  bool on_key_press_event(GdkEventKey* event) override;
  bool on_key_release_event(GdkEventKey* event) override;
  bool on_delete_event(GdkEventAny* event) override;
  bool on_map_event(GdkEventAny* event) override;
  void on_realize() override;
  bool on_focus_in_event(GdkEventFocus* event) override;
  bool on_focus_out_event(GdkEventFocus* event) override;

 private:
  static GdkFilterReturn onXEvent(GdkXEvent* event, GdkEvent* translated, void* unused);
  bool handleKey(GdkEventKey* event);
  void ensureInputMethod(GdkWindow* window);
  static void onCommit(GtkIMContext* context, const char* utf8, void* self);
  void commit(const char* utf8);
  void queueKey(Key::Code key, int state, int hwCode);
  void take(Key::Code key, int state, int hwCode);
  void sendToTerminal(Key::Code key, int state);
  void sendWithEsc(const GdkEventKey* event);
  void paste();
  static void onPaste(GtkClipboard* clipboard, const char* text, void* request);
  void beep();

  CEventQueue& events_;
  std::atomic<int>& blinkPhase_;
  ObjectPtr<GtkIMContext> imContext_;
  std::unique_ptr<TerminalSession> terminal_;
  unsigned terminalNumber_ = 0;  // counts them: tells a late paste that its terminal has gone
  int shiftState_ = 0;           // as the queue's reader knows it, and as it is now
  int latestShiftState_ = 0;
};
