#include "filecommands/attribute_command.h"

#include <cwctype>
#include <limits>

#include "filecommands/attribute_dialog.h"
#include "foundation/path_info.h"
#include "foundation/users.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"
#include "ui/escape_watch.h"

namespace {

using FindId = int64_t (*)(const Westring& name);

// The id of a name; without one, that of a number. -1 when the text is neither.
int64_t idOf(const Westring& text, FindId find) {
  const int64_t known = find(text);
  if (known >= 0) return known;
  int64_t number = 0;
  for (const wchar_t* at = text.data(); *at != 0; ++at) {
    if (*at < L'0' || *at > L'9') return -1;
    number = number * 10 + (*at - L'0');
    // The last one of all means "unchanged" to the system.
    if (number >= std::numeric_limits<uint32_t>::max()) return -1;
  }
  return number;
}

// False after a message.
bool readId(const Westring& text, FindId find, const char* message, std::optional<uint32_t>& id) {
  if (text.empty()) return true;
  const int64_t found = idOf(text, find);
  if (found < 0) {
    alert(message, text, AlertButtons::Ok, AlertColour::Error);
    return false;
  }
  id = static_cast<uint32_t>(found);
  return true;
}

class AttributeCommand {
 public:
  AttributeCommand(Panel& panel, const ChosenItems& items) : panel_(panel), items_(items) {}

  // True when all was done; false goes back to the dialog.
  bool apply(const CFileAttributeDialog& dialog);
  bool triedSome() const { return triedSome_; }

 private:
  enum class Step { GoOn, Stop };
  Step applyTo(ItemPlaces& places, entry& item, const AttributeChange& change);

  Panel& panel_;
  const ChosenItems& items_;
  bool triedSome_ = false;
};

bool AttributeCommand::apply(const CFileAttributeDialog& dialog) {
  AttributeChange change = dialog.boxes();
  if (!readId(dialog.owner(), userId, "Invalid user", change.owner) ||
      !readId(dialog.group(), groupId, "Invalid group", change.group)) {
    return false;
  }
  triedSome_ = true;
  ItemPlaces places(panel_);
  EscapeWatch watch;
  for (entry* item : items_.entries) {
    if (watch.pressed() || applyTo(places, *item, change) == Step::Stop) return false;
  }
  return true;
}

AttributeCommand::Step AttributeCommand::applyTo(ItemPlaces& places, entry& item,
                                                 const AttributeChange& change) {
  const Place place = places.of(item);
  for (;;) {
    struct stat now {};
    const int error = changeAttributes(place, change, now);
    if (error == 0) {
      item.mode = static_cast<uint16_t>(now.st_mode);
      item.owner = now.st_uid;
      item.group = now.st_gid;
      return Step::GoOn;
    }
    switch (alert(errorText(error), place.shown(), AlertButtons::RetrySkip, AlertColour::Error)) {
      case Answer::Retry:
        break;
      case Answer::Skip:
        return Step::GoOn;
      default:
        return Step::Stop;
    }
  }
}

}  // namespace

void attributeCommand(Panel& panel) {
  const ChosenItems items = chosenItems(panel, ParentEntry::Taken);
  if (items.empty()) return;
  AttributeCommand command(panel, items);
  {
    CFileAttributeDialog dialog(panel, items);
    while (dialog.ask() && !command.apply(dialog)) {
    }
  }
  if (command.triedSome()) panelRefresh();
}
