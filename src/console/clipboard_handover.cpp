#include "console/clipboard_handover.h"

#include "console/toolkit.h"
#include "foundation/threads.h"

namespace {

constexpr uint32_t QuietMs = 1000;
constexpr int MostWaits = 10;

bool isManagersAnswer(const GdkEventSelection& event) {
  return event.selection == gdk_atom_intern_static_string("CLIPBOARD_MANAGER");
}

gboolean onSelectionNotify(GtkWidget*, GdkEventSelection* event, gpointer answered) {
  if (!isManagersAnswer(*event)) return FALSE;
  static_cast<EventSem*>(answered)->post();
  return TRUE;
}

// False when there is nothing to hand over, or nobody to take it.
bool askManager(GtkWidget* window) {
  GdkDisplay* const display = gtk_widget_get_display(window);
  const bool isOurs = gdk_selection_owner_get(GDK_SELECTION_CLIPBOARD) != nullptr;
  if (!isOurs || !gdk_display_supports_clipboard_persistence(display)) return false;
  gtk_widget_hide(window);
  gdk_display_store_clipboard(display, gtk_widget_get_window(window), GDK_CURRENT_TIME, nullptr, 0);
  return true;
}

int requestsOf(const std::shared_ptr<ClipboardOffer>& offer) {
  return offer ? offer->requests.load() : 0;
}

}  // namespace

void handClipboardOver(GtkWidget* window, const std::shared_ptr<ClipboardOffer>& offer) {
  EventSem answered;
  gulong handler = 0;
  int requests = requestsOf(offer);
  {
    ToolkitLock lock;
    if (!lock.usable()) return;
    handler = g_signal_connect(window, "selection-notify-event", G_CALLBACK(onSelectionNotify),
                               &answered);
    if (!askManager(window)) answered.post();
  }
  for (int waits = 0; waits < MostWaits && answered.wait(QuietMs) != 0; ++waits) {
    if (requestsOf(offer) == requests) break;
    requests = requestsOf(offer);
  }
  const ToolkitLock lock;
  if (lock.usable()) g_signal_handler_disconnect(window, handler);
}
