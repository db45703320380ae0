#pragma once

enum class UserMenuKind { OfDirectory, Main };

// The user menu of the panel's directory, of one above it, or the user's main one: shows it and
// runs what is chosen for the panel of `side`. Nothing shows when there is no menu. Application
// thread.
void userMenu(int side, UserMenuKind kind);
