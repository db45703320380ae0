#pragma once

#include "language/macro_expansion.h"
#include "panels/model/panel_pair.h"

// What macros see of the two panels, from the side of the one they work for. Application thread.
class PanelMacros : public MacroContext {
 public:
  explicit PanelMacros(int side) : side_(side) {}

  Westring path(MacroPanel which) override;
  Westring currentName(MacroPanel which) override;
  int entryCount(MacroPanel which) override;
  entry* entryAt(MacroPanel which, int index) override;
  bool inArchive(MacroPanel which) override;
  std::optional<Westring> extract(MacroPanel which, const Westring& name) override;
  std::optional<Westring> ask(const Westring& title) override;
  std::optional<Westring> writeList(const std::vector<Westring>& lines) override;

 private:
  Panel& panel(MacroPanel which) {
    return panelPair().side[which == MacroPanel::This ? side_ : 1 - side_];
  }

  int side_;
};
