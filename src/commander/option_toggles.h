#pragma once

// The options that a key or a menu item flips; each shows its effect at once.
void toggleHidden();
void togglePathPrompt();
void toggleFullScreen();
void toggleClock();
void toggleTagDirectories();
void toggleThousandSeparator();
void toggleRetainCount();
