#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "editor/text/file_replacement.h"
#include "editor/text/journal_format.h"
#include "foundation/clock.h"
#include "foundation/system.h"
#include "foundation/westring.h"

// What has changed in a text since it was read or saved, in a private file of the edit directory,
// so that a program that ends in between loses a second of work at most. The file is made with the
// first step, and locked; only `end` removes it: whatever else happens, it is found again. It is
// written to the system, not forced to the disk. Application thread.
class EditJournal : public PrivateFileWitness {
 public:
  static constexpr size_t MostWaiting = 64;
  static constexpr int64_t LongestWaitNs = 1'000'000'000;

  explicit EditJournal(CClock& clock = systemClock()) : clock_(clock) {}
  ~EditJournal() override { flush(); }
  EditJournal(const EditJournal&) = delete;
  EditJournal& operator=(const EditJournal&) = delete;

  // Steps that are added from now on change this text. Those before are over, and their file is
  // gone.
  void begin(JournalBase base);
  // Writes what waits as soon as that is MostWaiting steps, or one has waited for long: then, and
  // only then, the result is an error. The step's bytes are asked for when they are written.
  using Bytes = std::function<std::string()>;
  int add(JournalStep step, Bytes bytes = {});
  // A save of the text is noted at once, with all steps before it.
  void onPrivateFile(const std::string& path, FileId id) override;
  void onWholeText(const FileStamp& stamp) override;
  void onDiscarded() override;
  // Milliseconds until `flush` should be called; nothing when no step waits.
  std::optional<uint32_t> dueIn() const;
  // Writes all that waits. 0, or errno: then it waits on.
  int flush();
  // The steps are saved, or not wanted. 0, or errno when the file stays.
  int end();

  const std::string& path() const { return path_; }  // of the file; "" while there is none

 private:
  struct Waiting {
    JournalStep step;
    Bytes bytes;
  };

  int create();
  int append(const std::string& bytes);
  int appendWaiting();
  int write(const std::string& bytes);
  int settle(int error);
  void note(const std::string& record);

  CClock& clock_;
  JournalBase base_;
  std::string path_;
  Descriptor file_;
  off_t size_ = 0;  // of whole records that count
  off_t end_ = 0;   // of what was written
  std::vector<Waiting> waiting_;
  int64_t waitingSince_ = 0;
};

// A journal that an edit has left, or that is being written.
class LeftJournal {
 public:
  const std::string& path() const { return path_; }
  const JournalContent& content() const { return content_; }
  bool isInUse() const { return isInUse_; }  // by a program that runs; it has no steps here
  bool fits() const { return fits_; }        // the file still is what the steps change
  // The path of the private file with all of the text that was being saved when the edit ended,
  // where the file itself may be torn; "" for none.
  const std::string& wholeText() const { return wholeText_; }
  // The journal, and where the file is untouched what a save of it has left. 0 or errno.
  int remove() const;

 private:
  friend std::vector<LeftJournal> findJournals(const Westring& file, const FileStamp& now);

  bool readHead(const std::string& path);
  bool isOf(const std::string& file, const FileStamp& now);
  bool readAll();
  bool isNeeded(const FileStamp& now);

  std::string path_;
  Descriptor file_;  // locked as long as this lives, so that nobody else takes the journal
  JournalContent content_;
  std::string wholeText_;
  bool isInUse_ = false;
  bool fits_ = false;
};

// The journals of a file, which now is `now`: by its absolute path, or where it has another one by
// now, by itself. What isn't a journal is passed over; one whose text was saved is removed.
std::vector<LeftJournal> findJournals(const Westring& file, const FileStamp& now);
