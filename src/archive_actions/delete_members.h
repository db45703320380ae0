#pragma once

#include <vector>

#include "archive_actions/archive_members.h"
#include "panels/model/panel.h"

// Deletes what is tagged in a panel that shows an archive, or the entry under the cursor. Nothing
// is asked. The archive is read again; where the tool has removed it, the panel goes back to the
// directory. What is still there keeps its tag. Application thread.
void deleteInArchive(Panel& panel);

// The same for members that were chosen before. 0, or what stopped the archiver.
int deleteMembers(Panel& panel, const std::vector<ChosenMember>& members);

// Before anything is done with members: one that was edited goes back into the archive, and an
// archive that has changed is read again, with the tags by name. Then `items` are those that the
// names stand for. False when one of them isn't there any more, which is told.
bool stillThere(Panel& panel, ChosenItems& items);

// The archive that a panel shows; null when it shows none.
ArchiveEntryStore* archiveOf(const Panel& panel);
// The entries of exactly these names, null for one that isn't there.
std::vector<entry*> entriesNamed(const Panel& panel, const std::vector<Westring>& names);
