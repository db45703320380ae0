#pragma once

#include "foundation/westring.h"

// What the editor asks with buttons of its own. Application thread. Each answer has ProgramEnds:
// nobody answered, nothing more is asked.
namespace TDEditor {

enum class LeaveAnswer { Save, Discard, Edit, ProgramEnds };
// "There are unsaved changes".
LeaveAnswer askLeave();

enum class ReplaceAnswer { Replace, Skip, Cancel, All, ProgramEnds };
// " String Found ".
ReplaceAnswer askReplace();

enum class RecoveryAnswer { Restore, Delete, Cancel, ProgramEnds };
// What to do with the journal of an edit that was never ended.
RecoveryAnswer askRecovery(const Westring& path);

// " Code Page Change ": true when the changes may go.
bool askReload();

}  // namespace TDEditor
