#include "fileops/delete_file.h"
#include "fileops/transfer_level.h"

// The second half of a directory's move into the place of a file: the target stands there whole,
// and what was copied into it goes from the source. Whatever appeared or changed there since,
// stays.

namespace {

bool isAsCopied(const struct stat& copied, const struct stat& now) {
  if (!S_ISREG(now.st_mode) && !S_ISLNK(now.st_mode)) return isSameThing(copied, now);
  return isUnchanged(copied, now) && copied.st_size == now.st_size;
}

}  // namespace

void Transfer::noteCopied(const struct stat& source) {
  copied_[idOf(source)] = source;
}

Transfer::Verdict Transfer::clearItem(const Item& item) {
  for (;;) {
    const Verdict verdict = attemptClear(item);
    if (verdict.kind != Verdict::Kind::Again) return verdict;
  }
}

Transfer::Verdict Transfer::attemptClear(const Item& item) {
  const Place& place = item.source;
  struct stat now;
  if (System::statAt(place.directory, place.name, &now, AT_SYMLINK_NOFOLLOW) < 0) {
    return errno == ENOENT ? decided(Outcome::Done) : settleFailure(item, sourceFailure(errno));
  }
  const auto copied = copied_.find(idOf(now));
  if (copied == copied_.end() || !isAsCopied(copied->second, now)) {
    return decided(Outcome::LeftInPlace);
  }
  if (S_ISDIR(now.st_mode)) {
    Attempt attempt;
    return settleCopy(item, attempt, enterDirectory(item, attempt, now));
  }
  const Outcome outcome = deleteFile(operation_, place, DeleteMode::Quiet, nullptr);
  if (outcome == Outcome::Done) takeDescription(item);
  return decided(outcome);
}
