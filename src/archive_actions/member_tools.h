#pragma once

#include "archive/archive_entry_store.h"
#include "archive_actions/archive_tool.h"
#include "archive_actions/member_copy.h"

// One member of an archive and the tool of its type, behind the panels. Application thread.

// How a tool knows the file of a record.
ToolOperand fileOperand(const Westring& innerPath, const ArchiveRecord& record, ArchiveType type);

// Reads the archive's file once more, in silence; it may be none by now.
ArchiveOpening readQuietly(const ArchiveEntryStore& archive);

// Takes one file out into the directory, where nothing else is: its path, or "" after a failure,
// which has been told unless the user ended it.
Westring extractMember(const ArchiveEntryStore& archive, const ToolOperand& file, uint64_t size,
                       const PrivateDirectory& directory);

// Puts the file back that was taken out, and looks whether it is there. What went wrong, or "".
Westring updateMember(const ArchiveEntryStore& archive, const Westring& innerPath,
                      const ToolOperand& file, const MemberCopy& copy);
