#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

#include "foundation/entry.h"
#include "foundation/westring.h"

// What the INFO panel tells about an archive.
struct ArchiveFacts {
  uint64_t size = 0;    // sum over all members, bytes
  uint64_t packed = 0;  // the same as stored
  Westring type;        // the format's name
};

// What lies below a directory of an archive.
struct ArchiveCount {
  uint64_t directories = 0;
  uint64_t files = 0;
  uint64_t bytes = 0;  // at most 2^63-1
};

class CTree;

// An archive file opened as a directory. Archives nest: each knows the one that holds it.
class OpenArchive {
 public:
  virtual ~OpenArchive() = default;
  virtual const Westring& path() const = 0;  // of the archive file, as the panel shows it
  // The listing of a directory inside, as DirFinder gives one: 0, Status::NoMoreFiles or errno; the
  // caller owns each record.
  virtual int first(const Westring& innerPath, entry*& result) = 0;
  virtual int next(entry*& result) = 0;
  virtual ArchiveFacts facts() const { return {}; }
  // False once its file is another one, or has another content, than when it was read.
  virtual bool isCurrent() const { return true; }
  virtual ArchiveCount countBelow(const Westring& /*innerPath*/) const { return {}; }
  // Calls with each directory that lies in the archive or is part of such a path, a parent before
  // what it holds.
  virtual void forEachDirectory(const std::function<void(const Westring& innerPath)>&) const {}

  std::unique_ptr<OpenArchive> parent;
  std::shared_ptr<CTree> tree;  // of its directories, once somebody has made it
};

// Of what couldn't be opened: whether the user knows why by now, or has ended it.
enum class Refusal { Unexplained, Explained };

// What came of opening a file as an archive: one, or none and a refusal.
struct ArchiveAttempt {
  ArchiveAttempt(std::unique_ptr<OpenArchive> opened) : archive(std::move(opened)) {}
  ArchiveAttempt(Refusal why) : refusal(why) {}

  std::unique_ptr<OpenArchive> archive;
  Refusal refusal = Refusal::Unexplained;
};

// Opens `file` as an archive inside `parent` (null for a real file). Without an opener nothing is
// an archive.
using ArchiveOpener = std::function<ArchiveAttempt(const Westring& file, OpenArchive* parent)>;
ArchiveOpener& archiveOpener();
ArchiveAttempt openArchive(const Westring& file, OpenArchive* parent);

// True when `path` is `directory` or lies below it, by whole components.
bool liesIn(const Westring& path, const Westring& directory);
// The part of `path` behind the archive's own, without slashes at its ends.
Westring innerPath(const OpenArchive& archive, const Westring& path);
// The archive file that stands on the disk: the outermost one of the chain.
const OpenArchive& outermostArchive(const OpenArchive& archive);
// An archive stays open while `path` lies in it and its file is there.
bool staysOpen(const OpenArchive& archive, const Westring& path);
// Takes the innermost archive off the chain; its parent is the innermost one then.
std::unique_ptr<OpenArchive> takeInnermost(std::unique_ptr<OpenArchive>& chain);
void attachInnermost(std::unique_ptr<OpenArchive>& chain, std::unique_ptr<OpenArchive> archive);
// Reads the innermost archive again. False when it is none any more; then it has left the chain.
bool reopenInnermost(std::unique_ptr<OpenArchive>& chain);
// Closes archives from the inside out until one stays open.
void closeLeftArchives(std::unique_ptr<OpenArchive>& chain, const Westring& path);
