#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "editor/document/long_line.h"
#include "editor/document/text_span.h"
#include "editor/text/text_encoding.h"
#include "editor/text/text_place.h"

// Asked now and then by what may take long, often enough for a key to be felt; true stops.
using StopAsked = std::function<bool()>;

// Told of each change after it was made.
class DocumentObserver {
 public:
  virtual ~DocumentObserver() = default;
  // The text from `from` to `to`, as the places were before, was replaced by `inserted`.
  virtual void onReplaced(TextPlace from, TextPlace to, const TextSpan& inserted) = 0;
  // All line ends became those of the style.
  virtual void onLineEnds(LineEndStyle style) = 0;
};

// The text of one file in memory: lines of characters, never less than one. The last line has no
// line end, all others have the one that they were read with. What isn't edited is written with the
// bytes that were read. Lines and indexes count from 0; a place beyond its line or beyond the last
// line counts as that line's or the text's end. Application thread.
class Document {
 public:
  // Told how many bytes of a load, or about how many lines of a write, are done; false stops.
  using Progress = std::function<bool(int64_t done)>;
  // Takes the next bytes of the text; 0 or an errno value, which ends the writing.
  using Sink = std::function<int(std::string_view bytes)>;

  Document();  // one empty line, UTF-8, LF
  ~Document();
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  // The text of `bytes` from `textStart` (behind the byte order mark) on. False when it was
  // stopped: the document is as it was then, and also when there was no memory (std::bad_alloc).
  bool load(std::string bytes, const TextEncoding& encoding, size_t textStart = 0,
            const Progress& progress = {});

  int64_t lineCount() const;
  int64_t lineLength(int64_t line) const;
  std::wstring text(int64_t line) const;
  std::wstring slice(int64_t line, int64_t from, int64_t count) const;
  int64_t lineBytes(int64_t line) const;       // in memory: what looking at all of it costs by
  wchar_t characterAt(TextPlace place) const;  // 0 at the end of the line
  TextPlace end() const;
  TextPlace clamped(TextPlace place) const;
  // Where the line of the byte at `offset` of the file begins, and how many bytes of it stand
  // before that one. For a text that is as it was loaded.
  struct BytePlace {
    int64_t line = 0;
    int64_t bytesBefore = 0;
  };
  BytePlace lineOfByte(int64_t offset) const;

  // The run that holds a line, as it is stored, and the line that it begins with; for the last line
  // a run without lines. Stays until the text is changed.
  struct RunPlace {
    const TextRun* run;
    int64_t firstLine;
  };
  RunPlace runAt(int64_t line) const;

  // Display columns: a tab reaches to the next multiple of `tabWidth` (1 to 8), every other
  // character takes one.
  int64_t columnOf(TextPlace place, int tabWidth) const;
  // The character whose cells reach to `column` or beyond: the tab for a column inside it. 0 for a
  // negative column, the length of the line for one beyond it.
  int64_t indexAt(int64_t line, int64_t column, int tabWidth) const;
  int64_t widthOf(int64_t line, int tabWidth) const;

  TextSpan span(TextPlace from, TextPlace to) const;
  struct Replaced {
    TextSpan removed;
    TextPlace end;  // behind what was put in
  };
  // The one way to change text.
  Replaced replace(TextPlace from, TextPlace to, const TextSpan& text);

  // A text without line ends in the place of characters of one line.
  struct LineChange {
    int64_t line = 0;
    int64_t from = 0;
    int64_t to = 0;
    std::wstring text;
  };
  // The same as `replace` for each of them, but much faster for many. In the order of their lines,
  // one a line.
  void replaceInLines(const std::vector<LineChange>& changes);

  const TextEncoding& encoding() const { return encoding_; }
  // What new lines end with; never Unknown.
  LineEndStyle lineEndStyle() const { return style_; }
  // Gives every line the end of `style`.
  void setLineEnds(LineEndStyle style);
  // Lines of UTF-8 that held something else when they were loaded.
  int64_t invalidLines() const { return invalidLines_; }

  // Reads the bytes of a text in a code page as those of another page. Characters that were typed
  // and that the old page lacks stay what they are. Undo steps must be recoded, too.
  void recode(int page);
  // Writes in this encoding from now on; the text stays what it is.
  void setEncoding(const TextEncoding& encoding) { encoding_ = encoding; }

  struct Written {
    int error = 0;         // of the sink; ECANCELED when it was stopped
    bool refused = false;  // a character that the encoding can't hold stands at `place`
    TextPlace place;
  };
  // All text, without a byte order mark, in any encoding.
  Written write(const TextEncoding& encoding, const Sink& sink,
                const Progress& progress = {}) const;

  void setObserver(DocumentObserver* observer) { observer_ = observer; }  // null: nobody

 private:
  // The one line that is being edited: it is put back among the others when another one is.
  struct WorkLine {
    int64_t line = -1;
    std::wstring text;
    std::wstring end;
    std::unique_ptr<LongLine> pieces;  // instead of the text, if it is long
  };
  // The line that was looked at last, unless it is long.
  struct SeenLine {
    int64_t line = -1;
    std::wstring text;
    std::wstring end;
  };
  struct SeenLongLine {
    int64_t line;
    std::unique_ptr<LongLine> pieces;
  };
  // A line of a run, or the last line.
  struct RunLine {
    const TextRun* run;
    LineBytes bytes;
  };

  void clear();
  void store() const;
  void forgetSeen() const;
  void openWorkLine(int64_t line);
  RunLine runLine(int64_t line) const;
  std::wstring lineEnd(int64_t line) const;
  // What is known of a line: the pieces of a long one or, when it gives null, all of its text,
  // which stays until the next look at the text.
  LongLine* look(int64_t line) const;
  LongLine* seenLongLine(int64_t line) const;
  LongLine* keepSeen(int64_t line, std::unique_ptr<LongLine> pieces) const;
  const std::wstring& seenText(int64_t line) const;
  std::vector<TextRun> runsBetween(int64_t line, int64_t from, int64_t to) const;
  TextRun textBetween(int64_t line, int64_t from, int64_t to) const;
  int64_t putInWorkLine(int64_t from, int64_t to, const TextRun& text);
  Replaced replaceInLine(TextPlace from, TextPlace to, const TextSpan& text);
  static RunTree changedLines(const RunTree& lines, int64_t first,
                              const std::vector<LineChange>& changes);
  Replaced replaceLines(TextPlace from, TextPlace to, const TextSpan& text);

  TextEncoding encoding_{TextFormat::Utf8, 0};
  LineEndStyle style_ = LineEndStyle::Lf;
  int64_t invalidLines_ = 0;
  size_t textStart_ = 0;
  DocumentObserver* observer_ = nullptr;

  // All lines but the last, and the last. The work line isn't up to date there. Looking at the text
  // may put it back, which changes nothing that can be seen.
  mutable RunTree lines_;
  mutable TextRun last_;
  mutable WorkLine work_;
  mutable SeenLine seen_;
  mutable std::vector<SeenLongLine> seenLong_;
};
