#include "editor/text/edit_journal.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "editor/text/edit_directory.h"
#include "foundation/not_offered.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/regular_file.h"
#include "foundation/safe_file.h"
#include "foundation/utf8.h"

namespace {

constexpr char NameStart[] = "journal-";
constexpr unsigned Attempts = 100;
constexpr int64_t NsPerMs = 1'000'000;
constexpr size_t LargestJournal = size_t{1} << 32;
constexpr size_t LargeStep = size_t{64} << 10;
constexpr size_t LargestHead = size_t{64} << 10;

std::string journalPath(unsigned attempt) {
  const std::string unique = temporaryNameBeside("", attempt);
  return bytePath(editDirectory()) + NameStart + unique.substr(unique.rfind('-') + 1);
}

// Without locks on this file system nobody can tell whether it is in use.
int lockJournal(int file) {
  return System::lock(file, LOCK_EX | LOCK_NB) == 0 || isNotOffered(errno) ? 0 : errno;
}

}  // namespace

void EditJournal::begin(JournalBase base) {
  end();
  base_ = std::move(base);
}

int EditJournal::create() {
  if (const int error = makeEditDirectory()) return error;
  constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  int error = EEXIST;
  for (unsigned attempt = 0; error == EEXIST && attempt < Attempts; ++attempt) {
    path_ = journalPath(attempt);
    file_ = Descriptor(System::open(path_.c_str(), flags, SafeFile::PrivateMode));
    error = file_.valid() ? lockJournal(file_.get()) : errno;
  }
  if (error == 0) error = append(journalHead(base_));
  if (error == 0) return 0;
  if (file_.valid()) System::unlink(path_.c_str());
  file_.reset();
  path_.clear();
  size_ = end_ = 0;
  return error;
}

int EditJournal::append(const std::string& bytes) {
  return settle(write(bytes));
}

int EditJournal::write(const std::string& bytes) {
  size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t count = System::write(file_.get(), bytes.data() + done, bytes.size() - done);
    if (count <= 0) return count < 0 ? errno : EIO;
    done += static_cast<size_t>(count);
  }
  end_ += static_cast<off_t>(bytes.size());
  return 0;
}

// What was written counts from now on, or is gone again.
int EditJournal::settle(int error) {
  if (error == 0) {
    size_ = end_;
  } else {
    System::truncate(file_.get(), size_);
    System::seek(file_.get(), size_, SEEK_SET);
    end_ = size_;
  }
  return error;
}

// All of them or none. The bytes of a large step are copied no more often than they must.
int EditJournal::appendWaiting() {
  int error = 0;
  std::string records;
  for (auto waiting = waiting_.begin(); error == 0 && waiting != waiting_.end(); ++waiting) {
    JournalStep& step = waiting->step;
    if (waiting->bytes) step.bytes = waiting->bytes();
    if (step.bytes.size() < LargeStep) {
      appendRecord(step, records);
    } else {
      appendRecordHead(step, records);
      error = write(records);
      if (error == 0) error = write(step.bytes);
      records.clear();
    }
    if (waiting->bytes) step.bytes = std::string();
  }
  if (error == 0) error = write(records);
  return settle(error);
}

int EditJournal::add(JournalStep step, Bytes bytes) {
  if (waiting_.empty()) waitingSince_ = clock_.nanoseconds();
  waiting_.push_back({std::move(step), std::move(bytes)});
  const bool isDue = waiting_.size() >= MostWaiting || dueIn() == 0;
  return isDue ? flush() : 0;
}

std::optional<uint32_t> EditJournal::dueIn() const {
  if (waiting_.empty()) return {};
  const int64_t left = waitingSince_ + LongestWaitNs - clock_.nanoseconds();
  return static_cast<uint32_t>(std::max<int64_t>((left + NsPerMs - 1) / NsPerMs, 0));
}

int EditJournal::flush() {
  if (waiting_.empty()) return 0;
  // After an error the next attempt is not made at once.
  waitingSince_ = clock_.nanoseconds();
  if (!file_.valid()) {
    if (const int error = create()) return error;
  }
  int error = 0;
  try {
    error = appendWaiting();
  } catch (const std::bad_alloc&) {  // a paste is in memory once more as the bytes of its step
    error = settle(ENOMEM);
  }
  if (error == 0) waiting_.clear();
  return error;
}

void EditJournal::onPrivateFile(const std::string& path, FileId id) {
  std::string record;
  appendPrivateFile(path, id, record);
  note(record);
}

void EditJournal::onWholeText(const FileStamp& stamp) {
  std::string record;
  appendWholeText(stamp, record);
  note(record);
}

void EditJournal::onDiscarded() {
  std::string record;
  appendDiscarded(record);
  note(record);
}

// Where that is impossible the save goes on: it has to be possible without a journal.
void EditJournal::note(const std::string& record) {
  if (flush() == 0 && (file_.valid() || create() == 0)) append(record);
}

int EditJournal::end() {
  waiting_.clear();
  if (!file_.valid()) return 0;
  const int error = System::unlink(path_.c_str()) == 0 || errno == ENOENT ? 0 : errno;
  // What can't be removed is at least no text any more.
  if (error != 0) System::truncate(file_.get(), 0);
  file_.reset();
  path_.clear();
  size_ = end_ = 0;
  return error;
}

int LeftJournal::remove() const {
  const std::optional<JournalSave>& save = content_.save;
  struct stat info;
  if (fits_ && save && System::lstat(save->path.c_str(), &info) == 0 && idOf(info) == save->id) {
    System::unlink(save->path.c_str());
  }
  return System::unlink(path_.c_str()) == 0 ? 0 : errno;
}

// False for what is no journal. The steps are left for later: most journals are of other files.
bool LeftJournal::readHead(const std::string& path) {
  path_ = path;
  if (openRegularFile(decodeFileName(path.c_str()), file_, Links::Refuse) != 0) return false;
  std::string head(LargestHead, '\0');
  const ssize_t length = System::readAt(file_.get(), head.data(), head.size(), 0);
  if (length < 0) return false;
  std::optional<JournalContent> content =
      readJournal(std::string_view(head).substr(0, static_cast<size_t>(length)));
  if (!content) return false;
  content_ = std::move(*content);
  return true;
}

bool LeftJournal::isOf(const std::string& file, const FileStamp& now) {
  fits_ = isUnchanged(content_.base.stamp, now);
  return fits_ || content_.base.path == file;
}

// False for one that has gone meanwhile.
bool LeftJournal::readAll() {
  isInUse_ = lockJournal(file_.get()) != 0;
  struct stat info;
  if (System::fstat(file_.get(), &info) < 0 || info.st_nlink == 0) return false;
  content_.steps.clear();
  if (isInUse_) return true;
  std::string bytes;
  if (readWhole(file_, bytes, LargestJournal) != 0) return false;
  std::optional<JournalContent> content = readJournal(bytes);
  if (content) content_ = std::move(*content);
  return content.has_value();
}

// False when the text was saved.
bool LeftJournal::isNeeded(const FileStamp& now) {
  if (isInUse_ || !content_.save) return true;
  const FileStamp& whole = content_.save->whole;
  if (isUnchanged(whole, now)) {
    // The private file has taken the name: the text was saved, only that wasn't noted.
    System::unlink(path_.c_str());
    return false;
  }
  struct stat info;
  const bool isThere = !fits_ && System::lstat(content_.save->path.c_str(), &info) == 0;
  if (isThere && isUnchanged(whole, FileStamp::of(info))) wholeText_ = content_.save->path;
  return true;
}

std::vector<LeftJournal> findJournals(const Westring& file, const FileStamp& now) {
  std::vector<LeftJournal> found;
  const std::string directory = bytePath(editDirectory());
  const std::string path = bytePath(file);
  std::vector<std::string> names;
  if (directory.empty() || listNames(directory.c_str(), names) != 0) return found;
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    LeftJournal journal;
    if (!name.starts_with(NameStart) || !journal.readHead(directory + name)) continue;
    if (!journal.isOf(path, now) || !journal.readAll()) continue;
    if (journal.isNeeded(now)) found.push_back(std::move(journal));
  }
  return found;
}
