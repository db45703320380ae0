#pragma once

// Failures are integers: 0, an errno value, or one of these.
namespace Status {
inline constexpr int FirstOwn = 0x40000001;  // those below are the system's
inline constexpr int NoMoreFiles = 0x40000001;
inline constexpr int NotReady = 0x40000002;
inline constexpr int ChangedMeanwhile = 0x40000003;  // a file, since it was read
inline constexpr int NotRegularFile = 0x40000004;
inline constexpr int TooLarge = 0x40000005;    // a file, to be edited
inline constexpr int NotOffered = 0x40000006;  // by the system, for this file
inline constexpr int EndOfFile = -1;
}  // namespace Status
