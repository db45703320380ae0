#include "shell/prompt.h"

#include "foundation/text_format.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"

Westring promptOf(const Panel& panel) {
  constexpr int shortLength = 2;
  Westring path = shownPath(panel);
  if (!GlobalOptions::PathPrompt) path = left(path, shortLength);
  return shortenPath(path, panelPair().screenColumns / 2 - 1) + L">";
}
