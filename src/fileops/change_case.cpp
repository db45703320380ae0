#include "fileops/change_case.h"

#include <cerrno>
#include <cstring>

#include "fileops/error_dialog.h"
#include "foundation/directory_walk.h"
#include "foundation/partial_file.h"
#include "foundation/same_place.h"
#include "foundation/system.h"

namespace {

int renamePlace(const Place& from, const Place& to) {
  const int result = System::renameAtNoReplace(from.directory, from.name, to.directory, to.name);
  return result == 0 ? 0 : errno;
}

// The two spellings are one name to the file system, which may take the new one for the old.
int renameByThirdName(const Place& from, const Place& to) {
  std::string third;
  const int error = makeBeside(to, third, [&](const char* name) {
    return renamePlace(from, {from.directory, name, name});
  });
  if (error) return error;
  const Place between{from.directory, third.c_str(), third.c_str()};
  const int last = renamePlace(between, to);
  if (last == 0) return 0;
  const int back = renamePlace(between, from);
  return back ? back : last;
}

int respell(const Place& from, const Place& to) {
  const bool renamed = System::renameAt(from.directory, from.name, to.directory, to.name) == 0;
  return renamed && !isOtherSpelling(from, to) ? 0 : renameByThirdName(from, to);
}

int renameInCase(const Place& from, const Place& to) {
  const int error = renamePlace(from, to);
  return error == EEXIST && isOtherSpelling(from, to) ? respell(from, to) : error;
}

// `flags` of statAt: 0 counts a link to a directory as one.
bool leadsToDirectory(const Place& place, int flags) {
  struct stat info;
  return System::statAt(place.directory, place.name, &info, flags) == 0 && S_ISDIR(info.st_mode);
}

std::string withLastName(const char* path, const std::string& name) {
  const char* old = byteName(path);
  return std::string(path, static_cast<size_t>(old - path)) + name;
}

// Follows the directories that keep their names.
class CaseWalk : public DirectoryVisitor {
 public:
  CaseWalk(RunningOperation& operation, const CaseChange& change, CaseChangeWatcher& watcher)
      : operation_(operation), change_(change), watcher_(watcher) {}

  Outcome run(const Place& item);

 private:
  enum class Step { Kept, Renamed, Failed, Cancelled };

  WalkStep member(const WalkedMember& member) override;
  WalkStep leave(const WalkedDirectory& directory) override;
  WalkRetry failed(const WalkError& error) override;
  bool interrupted() override { return operation_.cancelled(); }

  Step changeName(const Place& item);
  Step rename(const Place& from, const Place& to);
  void carryAlong(const Place& from, const Place& to);
  ErrorAnswer tell(int error, const Place& first, const Westring& second = Westring());

  RunningOperation& operation_;
  const CaseChange& change_;
  CaseChangeWatcher& watcher_;
  int64_t count_ = 0;
  bool failed_ = false;
};

ErrorAnswer CaseWalk::tell(int error, const Place& first, const Westring& second) {
  const ErrorAnswer answer = showError(operation_.ui, error, first.shown(), second);
  if (answer == ErrorAnswer::Skip) failed_ = true;
  return answer;
}

Outcome CaseWalk::run(const Place& item) {
  const bool entered = change_.recurse && leadsToDirectory(item, AT_SYMLINK_NOFOLLOW);
  const Step step = changeName(item);
  if (step == Step::Cancelled) return Outcome::Cancelled;
  if (entered && step != Step::Renamed &&
      DirectoryWalk(*this, {.kernelFileSystems = KernelFileSystems::Pass}).run(item) ==
          WalkEnd::Stopped) {
    return Outcome::Cancelled;
  }
  return failed_ ? Outcome::Failed : Outcome::Done;
}

WalkStep CaseWalk::member(const WalkedMember& member) {
  watcher_.working(byteParent(member.place.path).c_str(), ++count_);
  switch (changeName(member.place)) {
    case Step::Renamed:
      return WalkStep::Skip;
    case Step::Cancelled:
      return WalkStep::Stop;
    default:
      return WalkStep::GoOn;
  }
}

// A tree may have more directories than anybody wants to keep in mind.
WalkStep CaseWalk::leave(const WalkedDirectory& directory) {
  operation_.descriptions.forget(directory.place.path);
  return WalkStep::GoOn;
}

WalkRetry CaseWalk::failed(const WalkError& error) {
  if (error.fault == WalkFault::KernelFileSystem) return WalkRetry::Skip;
  switch (tell(error.error, error.place)) {
    case ErrorAnswer::Retry:
      return WalkRetry::Again;
    case ErrorAnswer::Cancel:
      return WalkRetry::Stop;
    default:
      return error.fault == WalkFault::Listing ? WalkRetry::Anyway : WalkRetry::Skip;
  }
}

CaseWalk::Step CaseWalk::changeName(const Place& item) {
  const Westring old = decodeFileName(byteName(item.name));
  const std::string name = bytePath(withCase(old, change_.rules));
  if (name == byteName(item.name) || isDescriptionFileName(byteName(item.name))) return Step::Kept;
  const bool directory = leadsToDirectory(item, 0);
  if (directory ? !change_.directories : !change_.files) return Step::Kept;
  const std::string relative = withLastName(item.name, name);
  const std::string path = withLastName(item.path, name);
  const Place to{item.directory, relative.c_str(), path.c_str()};
  const Step step = rename(item, to);
  if (step == Step::Renamed) carryAlong(item, to);
  return step;
}

CaseWalk::Step CaseWalk::rename(const Place& from, const Place& to) {
  for (;;) {
    const int error = renameInCase(from, to);
    if (error == 0) return Step::Renamed;
    switch (tell(error, from, to.shown())) {
      case ErrorAnswer::Retry:
        break;
      case ErrorAnswer::Cancel:
        return Step::Cancelled;
      default:
        return Step::Failed;
    }
  }
}

void CaseWalk::carryAlong(const Place& from, const Place& to) {
  DescriptionFile& descriptions = operation_.descriptions.of(byteParent(from.path));
  moveDescription(&descriptions, byteName(from.name), &descriptions, byteName(to.name));
  if (leadsToDirectory(to, AT_SYMLINK_NOFOLLOW)) watcher_.directoryRenamed(from.path, to.path);
}

}  // namespace

Outcome changeCase(RunningOperation& operation, const Place& item, const CaseChange& change,
                   CaseChangeWatcher& watcher) {
  return CaseWalk(operation, change, watcher).run(item);
}
