#pragma once

// Deletes one name of an open directory, with everything below it, when it belongs to this user.
// Nothing is asked and nothing is told. 0, or the errno of the first failure. Links are unlinked,
// other file systems' mounts are left alone, and what somebody moves away meanwhile isn't followed.
// Any thread.
int removePrivateTree(int parentDirectory, const char* name);
