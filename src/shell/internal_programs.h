#pragma once

#include "foundation/connection.h"
#include "foundation/westring.h"
#include "panels/model/panel.h"

// The viewer and the editor, as keys, menus and the commands $view and $edit call them. Paths are
// absolute. What they draw over is drawn anew by the caller. Application thread.
class InternalPrograms {
 public:
  virtual ~InternalPrograms() = default;
  virtual void view(const Westring&) {}
  // The file under the panel's cursor; from there the user may go on to the others.
  virtual void viewList(Panel&) {}
  virtual void edit(const Westring&) {}
};

Connection<InternalPrograms>& internalPrograms();
