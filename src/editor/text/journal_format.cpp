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

constexpr uint64_t Prime = 0x9E3779B97F4A7C15;

// Takes whole numbers from the front of `bytes`.
uint64_t addNumbers(uint64_t sum, std::string_view& bytes) {
  while (bytes.size() >= NumberSize) {
    sum = (sum ^ numberAt(bytes, 0)) * Prime;
    sum ^= sum >> 29;
    bytes.remove_prefix(NumberSize);
  }
  return sum;
}

// Of a payload, or of one that begins with `numbers` and goes on with `rest`. The same on every
// machine and in every run.
uint64_t checkSum(char kind, std::string_view rest, std::string_view numbers = {}) {
  uint64_t sum = (numbers.size() + rest.size() + 1) * Prime ^ static_cast<unsigned char>(kind);
  sum = addNumbers(sum, numbers);
  sum = addNumbers(sum, rest);
  for (const char byte : rest) sum = (sum ^ static_cast<unsigned char>(byte)) * Prime;
  return sum ^ sum >> 32;
}

void appendHead(char kind, uint64_t length, uint64_t sum, std::string& out) {
  out += kind;
  appendNumber(length, out);
  appendNumber(sum, out);
}

void appendPayload(char kind, std::string_view payload, std::string& out) {
  appendHead(kind, payload.size(), checkSum(kind, payload), out);
  out += payload;
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
  TextPlace place() {
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

bool isPlace(const TextPlace& place) {
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
  std::string payload;
  appendStamp(base.stamp, payload);
  appendNumber(static_cast<uint64_t>(base.encoding.format), payload);
  appendNumber(static_cast<uint64_t>(resolvedPage(base.encoding.page)), payload);
  appendNumber(base.hasMark, payload);
  payload += base.path;
  std::string out(Magic);
  appendPayload(HeadKind, payload, out);
  return out;
}

void appendRecordHead(const JournalStep& step, std::string& out) {
  const char kind = static_cast<char>(step.kind);
  std::string numbers;
  for (const TextPlace& place : {step.from, step.to}) {
    appendNumber(static_cast<uint64_t>(place.line), numbers);
    appendNumber(static_cast<uint64_t>(place.index), numbers);
  }
  appendNumber(static_cast<uint64_t>(step.value), numbers);
  const uint64_t sum = checkSum(kind, step.bytes, numbers);
  appendHead(kind, numbers.size() + step.bytes.size(), sum, out);
  out += numbers;
}

void appendRecord(const JournalStep& step, std::string& out) {
  appendRecordHead(step, out);
  out += step.bytes;
}

void appendPrivateFile(std::string_view path, FileId id, std::string& out) {
  std::string payload;
  appendNumber(id.device, payload);
  appendNumber(id.inode, payload);
  payload += path;
  appendPayload(PrivateFileKind, payload, out);
}

void appendWholeText(const FileStamp& stamp, std::string& out) {
  std::string payload;
  appendStamp(stamp, payload);
  appendPayload(WholeTextKind, payload, out);
}

void appendDiscarded(std::string& out) {
  appendPayload(DiscardedKind, {}, out);
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
