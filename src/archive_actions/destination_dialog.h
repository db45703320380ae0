#pragma once

#include "fileops/operation.h"
#include "foundation/westring.h"

enum class ArchiveAction { Extract, Compress };

// The line above the field: what is to be done with one entry, or with so many tagged ones.
Westring destinationLine(ArchiveAction action, TransferKind kind, const Westring& name);
Westring destinationLine(ArchiveAction action, TransferKind kind, int count);

// Asks where to extract or compress to, starting with `text`, which comes back without blanks at
// its ends. False on Esc. Application thread.
bool askArchiveDestination(const Westring& line, Westring& text);
