#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <ctime>

// What a copy takes over from its source.

// The source's time in the grain of two seconds of local time; times outside 1980 to 2107 as they
// are.
struct timespec copiedTime(struct timespec source);
// Access and modification time. 0 or errno.
int keepTimes(int fd, const struct stat& source);

// The mode for a copy that belongs to `owner` and `group`: set-id bits only stay with the same
// ones, or a copy would lend the rights of whoever made it.
mode_t keptMode(const struct stat& source, uid_t owner, gid_t group);
// Puts the source's mode on an open file.
void keepMode(int fd, const struct stat& source);
// Owner, group and extended attributes, as far as the system allows; for a move. `from` may be -1.
void keepOwnership(int from, int to, const struct stat& source);

// The mode that a copy is made with: never more open than its source, before umask.
mode_t modeInTheMaking(mode_t source);
// A directory that this process must be able to fill, and nobody else may see yet.
mode_t directoryModeInTheMaking(mode_t source);

// The process's umask. The system tells it only by changing it, so it is asked once; the program
// never changes it. Application thread.
mode_t fileModeMask();
