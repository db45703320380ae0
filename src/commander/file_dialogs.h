#pragma once

// "View the file:" and "Edit the file:" with a typed name.
void viewNamedFile();
void editNamedFile();
// The filter of one side's panel.
void setFilterDialog(int side);
