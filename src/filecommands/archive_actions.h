#pragma once

#include "fileops/operation.h"
#include "foundation/connection.h"
#include "panels/model/panel.h"

// What changes archives or takes files out of them. Application thread.
class ArchiveActions {
 public:
  virtual ~ArchiveActions() = default;
  // Deletes what is tagged in an archive panel, or the entry under the cursor. Asks nothing.
  virtual void remove(Panel&) {}
  // F5 and F6 of a panel when it shows an archive, or the other one does: extracts or adds.
  virtual void transfer(Panel&, TransferKind) {}
  // Takes the file of this name out of the panel's archive: the path of a temporary file, or ""
  // after a failure, which has been told.
  virtual Westring extract(Panel&, const Westring&) { return Westring(); }
  // Makes a new archive of what is tagged, or of the entry under the cursor.
  virtual void compress(Panel&) {}
};

Connection<ArchiveActions>& archiveActions();
