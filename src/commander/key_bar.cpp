#include "commander/key_bar.h"

#include <algorithm>
#include <array>

#include "commander/command_table.h"
#include "console/text_state.h"

std::string keyBarLabel(int number, int shiftState) {
  const auto rows = commandsOf(functionKey(number, shiftState));
  const auto labelled =
      std::ranges::find_if(rows, [](const Command* command) { return command->label != nullptr; });
  return std::to_string(number) + (labelled == rows.end() ? "" : (*labelled)->label);
}

void drawKeyBar(int shiftState) {
  std::array<std::string, KeyBarFields> texts;
  std::array<const char*, KeyBarFields> labels{};
  for (int i = 0; i < KeyBarFields; ++i) {
    texts[i] = keyBarLabel(i + 1, shiftState);
    labels[i] = texts[i].c_str();
  }
  drawKeyBarLine(labels.data());
}
