#include "editor/text/journal_format.h"

#include <array>
#include <cstring>

namespace {

constexpr std::string_view Magic = "td-edit 1\n";
constexpr char HeadKind = 'H';
constexpr char PrivateFileKind = 'P';
constexpr char WholeTextKind = 'W';
constexpr char DiscardedKind = 'D';
constexpr size_t NumberSize = 8;
constexpr int FormatBits = 8;                      // of the number of an encoding
constexpr size_t RecordHead = 1 + 2 * NumberSize;  // kind, length, check sum

void appendNumber(uint64_t number, std::string& out) {
  for (size_t i = 0; i < NumberSize; ++i) out += static_cast<char>(number >> (8 * i));
}

uint64_t numberAt(std::string_view bytes, size_t at) {
  uint64_t number = 0;
  for (size_t i = NumberSize; i-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
  }
  return number;
}

// The same on every machine and in every run.
uint64_t checkSum(char kind, std::string_view payload) {
  constexpr uint64_t Prime = 0x9E3779B97F4A7C15;
  uint64_t sum = (payload.size() + 1) * Prime ^ static_cast<unsigned char>(kind);
  while (payload.size() >= NumberSize) {
    sum = (sum ^ numberAt(payload, 0)) * Prime;
    sum ^= sum >> 29;
    payload.remove_prefix(NumberSize);
  }
  for (const char byte : payload) sum = (sum ^ static_cast<unsigned char>(byte)) * Prime;
  return sum ^ sum >> 32;
}

void putNumber(uint64_t number, size_t at, std::string& out) {
  std::string bytes;
  appendNumber(number, bytes);
  out.replace(at, NumberSize, bytes);
}

// What `fill` appends to `out` is the payload: it may be large, and is copied only once.
template <class Fill>
void appendPayload(char kind, std::string& out, Fill fill) {
  const size_t start = out.size();
  out += kind;
  out.append(2 * NumberSize, '\0');
  fill();
  const std::string_view payload = std::string_view(out).substr(start + RecordHead);
  const uint64_t sum = checkSum(kind, payload);
  putNumber(payload.size(), start + 1, out);
  putNumber(sum, start + 1 + NumberSize, out);
}

// Numbers one after the other, then text.
class PayloadReader {
 public:
  explicit PayloadReader(std::string_view payload) : rest_(payload) {}

  int64_t number() {
    if (rest_.size() < NumberSize) {
      good_ = false;
      return 0;
    }
    const auto result = static_cast<int64_t>(numberAt(rest_, 0));
    rest_.remove_prefix(NumberSize);
    return result;
  }
  StoredPlace place() {
    const int64_t line = number();
    return {line, number()};
  }
  FileStamp stamp() {
    FileStamp result;
    result.exists = number() != 0;
    result.id.device = static_cast<dev_t>(number());
    result.id.inode = static_cast<ino_t>(number());
    result.size = number();
    result.modified.tv_sec = number();
    result.modified.tv_nsec = number();
    return result;
  }
  std::string rest() const { return std::string(rest_); }
  bool good() const { return good_; }

 private:
  std::string_view rest_;
  bool good_ = true;
};

void appendStamp(const FileStamp& stamp, std::string& out) {
  appendNumber(stamp.exists, out);
  appendNumber(stamp.id.device, out);
  appendNumber(stamp.id.inode, out);
  appendNumber(static_cast<uint64_t>(stamp.size), out);
  appendNumber(static_cast<uint64_t>(stamp.modified.tv_sec), out);
  appendNumber(static_cast<uint64_t>(stamp.modified.tv_nsec), out);
}

std::optional<TextEncoding> encodingOf(int64_t format, int64_t page) {
  if (format < 0 || format >= static_cast<int64_t>(TextFormat::Undetermined)) return {};
  return TextEncoding{static_cast<TextFormat>(format), static_cast<int>(page)};
}

bool readBase(std::string_view payload, JournalBase& base) {
  PayloadReader reader(payload);
  base.stamp = reader.stamp();
  const int64_t format = reader.number();
  const std::optional<TextEncoding> encoding = encodingOf(format, reader.number());
  base.encoding = encoding.value_or(TextEncoding());
  base.hasMark = reader.number() != 0;
  base.path = reader.rest();
  return reader.good() && encoding;
}

// A record of a save. False for one of another kind, or that makes no sense.
bool readSave(char kind, std::string_view payload, std::optional<JournalSave>& save) {
  PayloadReader reader(payload);
  if (kind == DiscardedKind) {
    save.reset();
  } else if (kind == PrivateFileKind) {
    save.emplace();
    save->id.device = static_cast<dev_t>(reader.number());
    save->id.inode = static_cast<ino_t>(reader.number());
    save->path = reader.rest();
  } else if (kind == WholeTextKind && save) {
    save->whole = reader.stamp();
  } else {
    return false;
  }
  return reader.good();
}

bool isPlace(const StoredPlace& place) {
  return place.line >= 0 && place.index >= 0;
}

bool isStep(const JournalStep& step) {
  if (!isPlace(step.from) || !isPlace(step.to)) return false;
  switch (step.kind) {
    case JournalStep::Kind::Replace:
    case JournalStep::Kind::LineEnds:
    case JournalStep::Kind::Recode:
    case JournalStep::Kind::Mark:
      return true;
    case JournalStep::Kind::Encoding:
      return encodingOfNumber(step.value).has_value();
  }
  return false;
}

bool readStep(char kind, std::string_view payload, JournalStep& step) {
  PayloadReader reader(payload);
  step.kind = static_cast<JournalStep::Kind>(kind);
  step.from = reader.place();
  step.to = reader.place();
  step.value = reader.number();
  step.bytes = reader.rest();
  return reader.good() && isStep(step);
}

// The record at `at`, which moves behind it. False when there is no whole one.
bool nextRecord(std::string_view bytes, size_t& at, char& kind, std::string_view& payload) {
  if (bytes.size() - at < RecordHead) return false;
  kind = bytes[at];
  const uint64_t length = numberAt(bytes, at + 1);
  const uint64_t sum = numberAt(bytes, at + 1 + NumberSize);
  if (length > bytes.size() - at - RecordHead) return false;
  payload = bytes.substr(at + RecordHead, length);
  if (checkSum(kind, payload) != sum) return false;
  at += RecordHead + length;
  return true;
}

}  // namespace

int64_t encodingNumber(const TextEncoding& encoding) {
  return int64_t{resolvedPage(encoding.page)} << FormatBits | static_cast<int64_t>(encoding.format);
}

std::optional<TextEncoding> encodingOfNumber(int64_t number) {
  return encodingOf(number & ((1 << FormatBits) - 1), number >> FormatBits);
}

std::string journalHead(const JournalBase& base) {
  std::string out(Magic);
  appendPayload(HeadKind, out, [&] {
    appendStamp(base.stamp, out);
    appendNumber(static_cast<uint64_t>(base.encoding.format), out);
    appendNumber(static_cast<uint64_t>(resolvedPage(base.encoding.page)), out);
    appendNumber(base.hasMark, out);
    out += base.path;
  });
  return out;
}

void appendRecord(const JournalStep& step, std::string& out) {
  appendPayload(static_cast<char>(step.kind), out, [&] {
    for (const StoredPlace& place : {step.from, step.to}) {
      appendNumber(static_cast<uint64_t>(place.line), out);
      appendNumber(static_cast<uint64_t>(place.index), out);
    }
    appendNumber(static_cast<uint64_t>(step.value), out);
    out += step.bytes;
  });
}

void appendPrivateFile(std::string_view path, FileId id, std::string& out) {
  appendPayload(PrivateFileKind, out, [&] {
    appendNumber(id.device, out);
    appendNumber(id.inode, out);
    out += path;
  });
}

void appendWholeText(const FileStamp& stamp, std::string& out) {
  appendPayload(WholeTextKind, out, [&] { appendStamp(stamp, out); });
}

void appendDiscarded(std::string& out) {
  appendPayload(DiscardedKind, out, [] {});
}

std::optional<JournalContent> readJournal(std::string_view bytes) {
  if (!bytes.starts_with(Magic)) return {};
  JournalContent content;
  char kind = 0;
  std::string_view payload;
  size_t at = Magic.size();
  if (!nextRecord(bytes, at, kind, payload) || kind != HeadKind) return {};
  if (!readBase(payload, content.base)) return {};
  content.wholeBytes = at;
  while (nextRecord(bytes, at, kind, payload)) {
    JournalStep step;
    if (readStep(kind, payload, step)) {
      content.steps.push_back(std::move(step));
    } else if (!readSave(kind, payload, content.save)) {
      break;
    }
    content.wholeBytes = at;
  }
  return content;
}
