#pragma once

// Deletes one name of an open directory, with everything below it, when it belongs to this user.
// Nothing is asked and nothing is told. Links are unlinked, other file systems' mounts are left
// alone, and what somebody moves away meanwhile isn't followed. Any thread.
void removePrivateTree(int parentDirectory, const char* name);
