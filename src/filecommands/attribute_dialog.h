#pragma once

#include <array>

#include "filecommands/chosen_items.h"
#include "fileops/file_attributes.h"
#include "ui/dialog.h"

// The permissions, owner and group of files: of one as they are, or of tagged ones with a third
// state for what stays. A digit from 0 to 7 sets the three boxes of a row.
class CFileAttributeDialog : public Dialog {
 public:
  CFileAttributeDialog(const Panel& panel, const ChosenItems& items);

  // False on Esc, and at the end of the program.
  bool ask();
  // What the boxes say; without owner and group.
  AttributeChange boxes() const;
  const Westring& owner() const { return owner_; }
  const Westring& group() const { return group_; }

 private:
  static constexpr int Rows = 3, RowBoxes = 3;
  static constexpr int Bits = Rows + Rows * RowBoxes;

  void start(const Panel& panel, const entry& single);
  void addBoxes();
  int addBox(int x, int y, Group group, int bit);
  void addFields();
  int focusedRow() const;  // -1 outside the boxes
  void takeDigit(int digit);

  const bool tagged_;
  // From the highest bit of the mode down; of tagged files states, of a single one whether it is
  // set.
  std::array<unsigned char, Bits> state_{};
  std::array<bool, Bits> on_{};
  Westring owner_;
  Westring group_;
  std::array<int, Rows> firstOfRow_{};
  int ok_ = 0;
};
