#include "ui/exit_key.h"

ExitKey::ExitKey(Dialog& dialog, int key) : DialogElement(dialog, 0, 0, Group::Same) {
  enabled = false;
  hotKey = key;
}

void ExitKey::activate() {
  dialog_.setExitCode(hotKey);
}
