#pragma once

#include "foundation/westring.h"
#include "search/find_run.h"
#include "ui/dialog.h"

class EntryListBox;

namespace FindKey {
inline constexpr Key::Code Find{'f'};
inline constexpr Key::Code GoTo{'g'};
inline constexpr Key::Code Replace{Key::ctrl('r')};
inline constexpr Key::Code TooMany{-3};  // the list is full: no key
}  // namespace FindKey

// What is typed in the dialog, beside the options that its boxes set.
struct FindTexts {
  Westring files;
  Westring text;
  Westring drives;
};

// The window of File Find: the list, its status row and the fields. The list is empty until it
// follows a search, unless it begins in it. A search tells it by `news` that something has changed;
// everything is drawn by the dialog's own thread.
class FindDialog : public Dialog {
 public:
  enum class Begin { InFields, InList };

  FindDialog(FindTexts& texts, int* current, Begin begin);

  // The search whose progress is shown, or null. Not owned.
  void follow(FindRun* run);
  void news();         // any thread
  void listChanged();  // by the caller: another order, or fewer entries
  bool isInList() const { return focus() == list_; }
  void focusList() { setFocus(list_); }

 private:
  void addFields(FindTexts& texts);
  void addButtons();
  void takeNews();
  void showStatus();
  void putStatus(const Westring& text);

  int* current_;
  int rows_;  // of the interior
  int list_ = 0;
  EntryListBox* box_ = nullptr;
  FindRun* run_ = nullptr;
  bool toldFull_ = false;     // that the list is full
  int shown_ = 0;             // results
  bool followsLast_ = false;  // the cursor goes with the newest result
};

// How the end of a search is told. Pure.
Westring findSummary(FindState state, int count, uint64_t bytes);
