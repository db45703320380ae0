#pragma once

#include "archive/archive_entry_store.h"
#include "archive_actions/archive_tool.h"
#include "archive_actions/member_copy.h"

// One member of an archive and the tool of its type, behind the panels. Application thread.

// A file in an archive.
struct SingleMember {
  Westring innerPath;  // as it is listed
  ToolOperand file;    // the same for the tool
  uint64_t size = 0;   // bytes
};

// Reads the archive's file once more, in silence; it may be none by now.
ArchiveOpening readQuietly(const ArchiveEntryStore& archive);

// Takes one file out into the directory, where nothing else is: its path, or "" after a failure,
// which has been told unless the user ended it.
Westring extractMember(const ArchiveEntryStore& archive, const SingleMember& member,
                       const PrivateDirectory& directory);

// Puts the file back that was taken out, and looks whether it is there. What went wrong, or "".
Westring updateMember(const ArchiveEntryStore& archive, const SingleMember& member,
                      const MemberCopy& copy);
