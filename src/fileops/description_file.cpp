#include "fileops/description_file.h"

#include <fcntl.h>

#include <cerrno>
#include <unordered_set>

#include "foundation/file_mode_mask.h"
#include "foundation/fold.h"
#include "foundation/names.h"
#include "foundation/safe_file.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {

constexpr off_t LargestFile = 64 << 20;  // nobody describes so much; such a file is left alone
constexpr mode_t NewFileMode = 0660;

bool unchanged(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
         a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

}  // namespace

bool isDescriptionFileName(const char* name) {
  return sameWord(name, DescriptionFileName);
}

DescriptionFile::DescriptionFile(std::string directory, Presence presence)
    : directory_(std::move(directory)),
      state_(presence == Presence::Absent ? State::Absent : State::NotRead) {}

std::string DescriptionFile::path() const {
  return directory_ == "/" ? directory_ + DescriptionFileName
                           : directory_ + "/" + DescriptionFileName;
}

void DescriptionFile::load() {
  if (state_ != State::NotRead) return;
  state_ = State::Unusable;
  const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
  const Descriptor fd(System::open(path().c_str(), flags));
  if (!fd.valid()) {
    if (errno == ENOENT) state_ = State::Absent;
    return;
  }
  if (System::fstat(fd.get(), &info_) < 0 || !S_ISREG(info_.st_mode)) return;
  std::string content;
  if (info_.st_size > LargestFile || !readWhole(fd.get(), content)) return;
  lines_.parse(std::move(content));
  state_ = State::Read;
}

bool DescriptionFile::readWhole(int fd, std::string& content) {
  constexpr size_t Step = 64 * 1024;
  for (size_t used = 0;;) {
    content.resize(used + Step);
    const ssize_t got = System::read(fd, content.data() + used, Step);
    if (got < 0) return false;
    used += static_cast<size_t>(got);
    content.resize(used);
    if (got == 0) return true;
    if (used > static_cast<size_t>(LargestFile)) return false;
  }
}

// Somebody else may have written the file while the operation went on.
void DescriptionFile::reloadIfChanged() {
  if (state_ == State::Unusable) return;
  struct stat now;
  const bool exists = System::lstat(path().c_str(), &now) == 0;
  if (state_ == State::Read && exists && unchanged(now, info_)) return;
  if (state_ == State::Absent && !exists) return;
  lines_.parse(std::string());
  state_ = State::NotRead;
  load();
}

std::optional<std::string> DescriptionFile::find(const char* name) {
  if (!canBeDescribed(name)) return std::nullopt;
  if (!pending_.empty()) {
    const auto change = pending_.find(name);
    if (change != pending_.end()) return change->second;
  }
  load();
  if (state_ != State::Read || cleared_) return std::nullopt;
  const std::string_view* text = lines_.find(name);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

bool DescriptionFile::set(const char* name, const std::string& text) {
  load();
  if (state_ == State::Unusable || !canBeDescribed(name)) return false;
  pending_.insert_or_assign(name, text);
  order_.push_back(name);
  return true;
}

void DescriptionFile::erase(const char* name) {
  if (find(name)) pending_.insert_or_assign(name, std::nullopt);
}

void DescriptionFile::eraseAfter(DescriptionFile& target, const char* name) {
  if (&target == this) {
    erase(name);
  } else {
    late_.emplace_back(&target, name);
  }
}

std::string DescriptionFile::remaining() {
  load();
  return state_ == State::Unusable ? std::string() : composed();
}

void DescriptionFile::append(const std::string& lines) {
  appended_ += lines;
}

void DescriptionFile::clear() {
  cleared_ = true;
  pending_.clear();
  order_.clear();
  late_.clear();
}

bool DescriptionFile::hasUnwritten() const {
  return cleared_ || !pending_.empty() || !appended_.empty();
}

void DescriptionFile::settleLateErasures() {
  std::vector<std::pair<DescriptionFile*, std::string>> waiting;
  for (auto& [target, name] : late_) {
    if (target->hasUnwritten()) {
      waiting.emplace_back(target, name);
    } else if (!target->failed()) {
      erase(name.c_str());
    }
  }
  late_ = std::move(waiting);
}

std::string DescriptionFile::composed() {
  std::string content;
  if (state_ == State::Read && !cleared_) {
    for (const DescriptionLines::Line& line : lines_.lines()) {
      if (line.name.empty() || !isPending(std::string(line.name))) content += line.whole;
    }
  }
  auto endLine = [&content] {
    if (!content.empty() && content.back() != '\n') content += "\r\n";
  };
  std::unordered_set<std::string_view> written;
  for (const std::string& name : order_) {
    const auto change = pending_.find(name);
    if (change == pending_.end() || !change->second || !written.insert(name).second) continue;
    endLine();
    content += descriptionLine(name, *change->second);
  }
  if (!appended_.empty()) endLine();
  return content + appended_;
}

int DescriptionFile::flush() {
  settleLateErasures();
  if (!hasUnwritten()) return 0;
  reloadIfChanged();
  int error = EACCES;
  if (state_ != State::Unusable) {
    const std::string content = composed();
    error = content.empty() ? removeFile() : write(content);
  }
  failed_ = error != 0;
  forgetChanges();
  return error;
}

int DescriptionFile::removeFile() {
  if (state_ == State::Absent) return 0;
  return System::unlink(path().c_str()) == 0 || errno == ENOENT ? 0 : errno;
}

int DescriptionFile::write(const std::string& content) {
  SafeFile file;
  // Anybody's directory may hold one; a link there is never written through.
  if (const int error = file.create(decodeFileName(path().c_str()), Links::Refuse)) return error;
  int error = file.write(content.data(), content.size());
  if (error == 0) error = file.commit(NewFileMode & ~fileModeMask());
  file.discard();
  leftover_ = file.leftover();
  return error;
}

void DescriptionFile::forgetChanges() {
  pending_.clear();
  order_.clear();
  appended_.clear();
  cleared_ = false;
  lines_.parse(std::string());
  state_ = State::NotRead;
}

void copyDescription(DescriptionFile* from, const char* fromName, DescriptionFile* to,
                     const char* toName) {
  if (!from || !to) return;
  if (const auto text = from->find(fromName)) to->set(toName, *text);
}

void moveDescription(DescriptionFile* from, const char* fromName, DescriptionFile* to,
                     const char* toName) {
  if (!from || !to) return;
  const auto text = from->find(fromName);
  if (text && to->set(toName, *text)) from->eraseAfter(*to, fromName);
}

DescriptionFile& DescriptionCache::of(const std::string& directory) {
  if (last_ && last_->directory() == directory) return *last_;
  auto& file = files_[directory];
  if (!file) file = std::make_unique<DescriptionFile>(directory);
  last_ = file.get();
  return *last_;
}

void DescriptionCache::forget(const std::string& directory) {
  const auto found = files_.find(directory);
  if (found == files_.end()) return;
  flush();
  keepLeftover(*found->second);
  last_ = nullptr;
  files_.erase(found);
}

// A line that moved leaves its old file only when the new one is written, hence the second round.
void DescriptionCache::flush() {
  constexpr int Rounds = 2;
  for (int round = 0; round < Rounds; ++round) {
    for (auto& [directory, file] : files_) file->flush();
  }
}

void DescriptionCache::keepLeftover(DescriptionFile& file) {
  std::string leftover = file.takeLeftover();
  if (!leftover.empty()) leftovers_.push_back(std::move(leftover));
}

std::vector<std::string> DescriptionCache::takeLeftovers() {
  for (auto& [directory, file] : files_) keepLeftover(*file);
  return std::exchange(leftovers_, {});
}
