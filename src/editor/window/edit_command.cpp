#include <algorithm>
#include <iterator>

#include "editor/window/edit_command.h"

namespace {

EditCommands joined(std::initializer_list<EditCommands (*)()> rooms) {
  EditCommands all;
  for (const auto room : rooms) {
    EditCommands rows = room();
    std::ranges::move(rows, std::back_inserter(all));
  }
  return all;
}

}  // namespace

const EditCommands& allEditCommands() {
  static const EditCommands all =
      joined({moveCommands, typeCommands, deleteCommands, markCommands, undoCommands,
              editOptionCommands, blockCommands, searchCommands, replaceCommands, saveCommands,
              formatCommands, leaveCommands});
  return all;
}

const EditCommand* findEditCommand(Key::Code key, int modifiers) {
  const EditCommands& all = allEditCommands();
  const auto fits = [&](const EditCommand& row) {
    return (row.traits.modifiers & modifiers) == row.traits.modifiers &&
           std::ranges::find(row.codes, key) != row.codes.end();
  };
  const auto found = std::ranges::find_if(all, fits);
  return found == all.end() ? nullptr : &*found;
}
