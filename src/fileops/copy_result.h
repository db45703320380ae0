#pragma once

#include <cerrno>

// What one attempt to copy or move came to. The question loops turn it into an Outcome.
enum class CopyStatus {
  Done,
  PassedOver,      // the target is as new as the source: handled without a word
  Entered,         // a directory: its members come next
  Exists,          // the target is in the way and may not be replaced yet
  Refused,         // replacing was allowed, but the directory takes no new name
  Itself,          // source and target are one file
  OpenForWriting,  // somebody holds the source open
  SourceFailed,    // `code` tells why; the target is untouched
  TargetFailed,
  Failed,       // as TargetFailed, but the user was told already
  LeftInPlace,  // the source of a move couldn't be removed
  KeptSource,   // or was not to be: its content went into a device
  Cancelled
};

struct [[nodiscard]] CopyResult {
  CopyStatus status = CopyStatus::Done;
  int code = 0;
};

inline CopyResult sourceFailure(int code) {
  return {CopyStatus::SourceFailed, code};
}
inline CopyResult targetFailure(int code) {
  return {code == EEXIST ? CopyStatus::Exists : CopyStatus::TargetFailed, code};
}
