#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <memory>

// What an offer of text on the clipboard has come to. The toolkit thread changes it.
struct ClipboardOffer {
  std::atomic<bool> stands{true};  // nobody has taken the clipboard over
  std::atomic<int> requests{0};    // how often the text was asked for
};

// At the end of the program: asks the desktop's clipboard manager to take over what this program
// has on the clipboard, where there are both, and hides the window meanwhile. A manager may be done
// without ever saying so; then the wait ends a second after it last asked for the text of `offer`,
// which may be null. Application thread, without the toolkit's lock, while the toolkit's loop runs.
void handClipboardOver(GtkWidget* window, const std::shared_ptr<ClipboardOffer>& offer);
