#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <ctime>

// What a copy takes over from its source.

// The source's time in the grain of two seconds of local time; times outside 1980 to 2107 as they
// are.
struct timespec copiedTime(struct timespec source);
// The functions below take also descriptors opened with O_PATH, and give 0 or errno; what the file
// system doesn't offer, or refuses for files of others, is done without and no error.

// A copy has the source's modification time for both of its times, in their grain of two seconds; a
// move has both times whole.
enum class TimeGrain { TwoSeconds, Whole };
int keepTimes(int fd, const struct stat& source, TimeGrain grain);
// As of a copy, for the name of a symbolic link.
int keepLinkTimes(int directory, const char* name, const struct stat& source);

// The mode for a copy that belongs to `owner` and `group`: set-id bits only stay with the same
// ones, or a copy would lend the rights of whoever made it.
mode_t keptMode(const struct stat& source, uid_t owner, gid_t group);
// The source's mode.
int keepMode(int fd, const struct stat& source);
// Owner, group and extended attributes, access lists among them; for a move. Without extended
// attributes when `from` is -1.
int keepOwnership(int from, int to, const struct stat& source);

// Whether both have the same owner, group, mode and extended attributes; those that this process
// may not read count as different. 0 or errno.
int compareAttributes(int a, int b, bool& same);

// The mode that a copy is made with: never more open than its source, before umask.
mode_t modeInTheMaking(mode_t source);
// A directory that this process must be able to fill, and nobody else may see yet.
mode_t directoryModeInTheMaking(mode_t source);
