#pragma once

// Joins the editor's clipboard to the desktop's, for the rest of the run; may be called again.
// Application thread, once the console stands.
void connectDesktopClipboard();
