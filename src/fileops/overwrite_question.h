#pragma once

#include "fileops/operation.h"
#include "foundation/place.h"

enum class OverwriteDecision { Replace, Leave, CompareDates, Cancel };

// Standing answers were given for what was there before the command, not for what it made itself.
enum class MadeBy { Others, ThisCommand };

// What is to become of an existing target: by the standing answer, or by the question "File already
// exists, Overwrite?", whose answers may become the standing one.
OverwriteDecision decideOverwrite(RunningOperation& operation, TransferKind kind,
                                  const Westring& target, MadeBy madeBy);

enum class OpenFileDecision { Copy, Leave, Cancel };
// The same for a source that is open for writing.
OpenFileDecision decideOpenFile(RunningOperation& operation, const Westring& source);

enum class MergeDecision { Merge, Leave, Decline, Cancel };
// Whether a directory may be copied into an existing one of its name. Asked only for a bare name,
// since whole paths were chosen knowingly.
MergeDecision decideMerge(RunningOperation& operation, const Place& source);

enum class TargetAge { Older, NotOlder, Unknown };
// The target against the source, to two seconds; Unknown when either time can't be read.
TargetAge compareAges(const Place& target, const Place& source);
