#pragma once

#include "editor/document/document.h"
#include "editor/text/edit_journal.h"

// Puts each change of a text into the journal of its edit. Application thread.
class JournalKeeper : public DocumentObserver {
 public:
  // From now on `document` is watched; it is as its file, which `base` describes.
  void begin(Document& document, JournalBase base);
  void onReplaced(TextPlace from, TextPlace to, const TextSpan& inserted) override;
  void onLineEnds(LineEndStyle style) override;
  void onRecoded(int page);
  void onMark(bool hasMark);
  void onEncoding(const TextEncoding& encoding);  // that it will be saved in
  // Is told of the private files that saving makes.
  PrivateFileWitness& savings() { return journal_; }

  // Milliseconds until `flush` is due; nothing when nothing waits.
  std::optional<uint32_t> dueIn() const { return journal_.dueIn(); }
  int flush() { return noted(journal_.flush()); }  // 0 or errno
  void end() { journal_.end(); }                   // the changes are saved, or not wanted
  // Why changes couldn't be put aside, for the user to know: told once in an edit, and of a user's
  // directory that can't be one, once in a run. 0 when there is nothing to tell, as without a home.
  int untoldError();

 private:
  void add(JournalStep::Kind kind, int64_t value);
  int noted(int error);

  EditJournal journal_;
  int error_ = 0;  // the last one since untoldError
  bool told_ = false;
};
