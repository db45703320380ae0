#pragma once

#include "filecommands/archive_actions.h"

// What changes archives and takes files out of them, by the external tools. Application thread.
class ActionsByTools : public ArchiveActions {
 public:
  void remove(Panel& panel) override;
  void transfer(Panel& source, TransferKind kind) override;
  Westring extract(Panel& panel, const Westring& name) override;
  void compress(Panel& panel) override;
};
