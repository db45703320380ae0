// Random commands on a document and on a plain list of lines: after each of them the lines, their
// ends, the cursor and the bytes that a save would write are the same.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "document/document_support.h"
#include "document/naive_document.h"
#include "editor/document/document_search.h"
#include "editor/document/edit_clipboard.h"
#include "editor/document/text_rules.h"

namespace {
// How many commands there are in all; TD_MODEL_COMMANDS asks for more.
constexpr long UsualCommands = 20000;
constexpr int64_t MostLines = 160;
constexpr int StepsOfOneText = 400;

long commandCount() {
  const char* wanted = std::getenv("TD_MODEL_COMMANDS");
  return wanted ? std::atol(wanted) : UsualCommands;
}

struct NaiveStep {
  NaiveText removed;
  TextPlace before, after, from, to;
};

class Model {
 public:
  Model(unsigned seed, const TextEncoding& encoding) : random_(seed), encoding_(encoding) {
    reload(randomBytes());
  }

  void command();
  void compare();

 private:
  int64_t upTo(int64_t most) {  // from 0
    return std::uniform_int_distribution<int64_t>(0, most)(random_);
  }
  wchar_t anyCharacter();
  std::wstring anyText(int64_t most);
  std::string randomBytes();
  TextPlace anyPlace();

  void reload(const std::string& bytes);
  void put(TextPlace from, TextPlace to, const TextSpan& span, const NaiveText& naive);
  void undo(bool isRedo);
  void search();
  void replaceEverything();
  void copy();
  void indent();
  void changePage();
  TextPlace nearPlace();

  std::mt19937 random_;
  TextEncoding encoding_;
  Document document_;
  EditHistory history_;
  NaiveDocument naive_;
  std::vector<NaiveStep> undo_, redo_;
  TextPlace cursor_, naiveCursor_;
  TextSpan held_;
  NaiveText naiveHeld_{1};
};

wchar_t Model::anyCharacter() {
  static constexpr wchar_t Characters[] = L"aab (x)_\t\u00E9\u20AC\u3042";
  return Characters[upTo(std::size(Characters) - 2)];
}

std::wstring Model::anyText(int64_t most) {
  std::wstring text;
  for (int64_t left = upTo(most); left > 0; --left) {
    static constexpr const wchar_t* Ends[] = {L"\n", L"\r\n", L"\r"};
    if (upTo(6) == 0) {
      text += Ends[upTo(2)];
    } else {
      text += anyCharacter();
    }
  }
  return text;
}

// Lines of all kinds; some of the bytes are no characters.
std::string Model::randomBytes() {
  std::string bytes;
  for (int64_t left = upTo(MostLines); left > 0; --left) {
    std::wstring line;
    for (int64_t i = upTo(12); i > 0; --i) line += anyCharacter();
    static const std::wstring Ends[] = {L"\n", L"\r\n", L"\r", std::wstring(1, 0), L"\n\r"};
    line += Ends[upTo(9) > 2 ? 0 : upTo(4)];
    encodeText(line, encoding_, bytes);
    if (unitBytes(encoding_.format) == 1 && upTo(5) == 0) bytes += static_cast<char>(upTo(255));
  }
  if (upTo(3) == 0) bytes += "end";
  return bytes;
}

TextPlace Model::anyPlace() {
  const int64_t line = upTo(naive_.end().line);
  const auto length = static_cast<int64_t>(naive_.lines[static_cast<size_t>(line)].text.size());
  return {line, upTo(length)};
}

TextPlace Model::nearPlace() {
  if (upTo(2) != 0) return cursor_;
  return anyPlace();
}

void Model::reload(const std::string& bytes) {
  ASSERT_TRUE(document_.load(bytes, encoding_));
  naive_.load(bytes, encoding_);
  history_.clearSteps();
  undo_.clear();
  redo_.clear();
  cursor_ = naiveCursor_ = {};
}

void Model::put(TextPlace from, TextPlace to, const TextSpan& span, const NaiveText& naive) {
  NaiveStep step{naive_.cut(from, to), cursor_, {}, from, naive_.replace(from, to, naive)};
  step.after = step.to;
  Document::Replaced replaced = document_.replace(from, to, span);
  history_.push({std::move(replaced.removed), cursor_, replaced.end, from, replaced.end, 0});
  cursor_ = replaced.end;
  naiveCursor_ = step.to;
  undo_.push_back(std::move(step));
  if (undo_.size() > TUndoStack::Limit) undo_.erase(undo_.begin());
  redo_.clear();
}

void Model::undo(bool isRedo) {
  if (isRedo) {
    history_.redoStep(document_, cursor_);
  } else {
    history_.undoStep(document_, cursor_);
  }
  std::vector<NaiveStep>& source = isRedo ? redo_ : undo_;
  if (source.empty()) return;
  const NaiveStep step = source.back();
  if (naiveCursor_ != step.after) {
    naiveCursor_ = step.after;
    return;
  }
  NaiveStep inverse{naive_.cut(step.from, step.to), step.after, step.before, step.from, {}};
  inverse.to = naive_.replace(step.from, step.to, step.removed);
  naiveCursor_ = inverse.after;
  source.pop_back();
  (isRedo ? undo_ : redo_).push_back(std::move(inverse));
}

// The next hit, compared with one found character by character.
void Model::search() {
  SearchQuery query{std::wstring(static_cast<size_t>(1 + upTo(1)), anyCharacter())};
  if (upTo(1) == 0) query.text += anyCharacter();
  query.letters = upTo(1) == 0 ? SearchCase::Ignored : SearchCase::Respected;
  query.direction = upTo(1) == 0 ? SearchDirection::Forward : SearchDirection::Backward;
  query.words = upTo(2) == 0 ? SearchWords::WholeOnly : SearchWords::Any;
  TextPlace place = anyPlace();
  const TextPlace start = place;
  const bool isFound = findText(document_, query, place) == SearchEnd::Found;

  const int64_t step = query.direction == SearchDirection::Forward ? 1 : -1;
  const auto length = static_cast<int64_t>(query.text.size());
  for (int64_t line = start.line; line >= 0 && line <= naive_.end().line; line += step) {
    const std::wstring& text = naive_.lines[static_cast<size_t>(line)].text;
    const auto end = static_cast<int64_t>(text.size());
    for (int64_t i = step > 0 ? 0 : end - length; i >= 0 && i + length <= end; i += step) {
      if (line == start.line && (step > 0 ? i < start.index : i > start.index)) continue;
      bool isHit = true;
      for (int64_t j = 0; j < length; ++j) {
        const wchar_t a = text[static_cast<size_t>(i + j)];
        const wchar_t b = query.text[static_cast<size_t>(j)];
        isHit = isHit &&
                (a == b || (query.letters == SearchCase::Ignored &&
                            towupper(static_cast<wint_t>(a)) == towupper(static_cast<wint_t>(b))));
      }
      if (query.words == SearchWords::WholeOnly) {
        isHit = isHit && (i == 0 || !isEditWordCharacter(text[static_cast<size_t>(i - 1)])) &&
                (i + length == end || !isEditWordCharacter(text[static_cast<size_t>(i + length)]));
      }
      if (!isHit) continue;
      ASSERT_TRUE(isFound);
      ASSERT_EQ(place, (TextPlace{line, i}));
      return;
    }
  }
  ASSERT_FALSE(isFound);
}

void Model::replaceEverything() {
  const std::wstring wanted(1, L'a');
  const std::wstring replacement = anyText(1);
  const TextSpan span = TextSpan::fromText(replacement, naive_.style);
  const int64_t command = history_.newReplaceAll();
  const ReplaceAllResult result =
      replaceAll(document_, history_, {wanted, SearchCase::Respected}, span, {0, 0}, command);
  int64_t count = 0;
  TextPlace at;
  while (at.line <= naive_.end().line) {
    const size_t hit =
        naive_.lines[static_cast<size_t>(at.line)].text.find(wanted, static_cast<size_t>(at.index));
    if (hit == std::wstring::npos) {
      at = {at.line + 1, 0};
      continue;
    }
    at.index = static_cast<int64_t>(hit);
    at = naive_.replace(at, {at.line, at.index + 1}, naiveText(replacement, naive_.style));
    ++count;
  }
  ASSERT_EQ(result.count, count);
  history_.clearSteps();
  undo_.clear();
  redo_.clear();
  cursor_ = naiveCursor_ = {};
}

void Model::copy() {
  TextPlace from = anyPlace();
  TextPlace to = anyPlace();
  if (to < from) std::swap(from, to);
  held_ = document_.span(from, to);
  naiveHeld_ = naive_.cut(from, to);
  if (upTo(3) == 0) held_ = TextSpan::fromStored(held_.stored());
}

void Model::indent() {
  const int64_t first = upTo(naive_.end().line);
  const int64_t behind = first + 1 + upTo(std::min<int64_t>(3, naive_.end().line - first));
  const int64_t delta = upTo(6) - 3;
  const auto change = indentChange(document_, first, behind, delta, 4);
  NaiveText text =
      naive_.cut({first, 0},
                 {behind - 1,
                  static_cast<int64_t>(naive_.lines[static_cast<size_t>(behind) - 1].text.size())});
  bool isChanged = false;
  for (NaiveLine& line : text) {
    size_t blanks = 0;
    int64_t columns = 0;
    for (; blanks < line.text.size() && isEditBlank(line.text[blanks]); ++blanks)
      columns = line.text[blanks] == L'\t' ? columns / 4 * 4 + 4 : columns + 1;
    if (blanks == line.text.size() || columns + delta < 0) continue;
    line.text.replace(0, blanks, std::wstring(static_cast<size_t>(columns + delta), L' '));
    isChanged = true;
  }
  ASSERT_EQ(change.has_value(), isChanged);
  if (change) put(change->from, change->to, change->text, text);
}

void Model::changePage() {
  if (encoding_.format != TextFormat::CodePage || encoding_.page == 932) return;
  const int page = encoding_.page == 1252 ? 850 : 1252;
  const TextEncoding other{TextFormat::CodePage, page};
  document_.recode(page);
  history_.recode(encoding_, other);
  naive_.recode(encoding_.page, page);
  for (std::vector<NaiveStep>* steps : {&undo_, &redo_}) {
    for (NaiveStep& step : *steps) {
      NaiveDocument text;
      text.lines = step.removed;
      text.recode(encoding_.page, page);
      step.removed = text.lines;
    }
  }
  encoding_ = other;
}

void Model::command() {
  TextPlace from = nearPlace();
  TextPlace to = upTo(3) == 0 ? anyPlace() : from;
  if (to < from) std::swap(from, to);
  const int64_t kind = upTo(99);
  if (naive_.end().line > MostLines) {
    put({0, 0}, anyPlace(), {}, NaiveText(1));
  } else if (kind < 30) {
    const std::wstring typed(1, anyCharacter());
    put(from, to, spanOf(typed), naiveText(typed, naive_.style));
  } else if (kind < 40) {
    const std::wstring end = upTo(4) == 0 ? L"\r" : L"\n";
    put(from, from, TextSpan::lineEnd(end), {{L"", end}, {}});
  } else if (kind < 50) {
    if (from == to) to = placeRight(document_, from);
    put(from, to, {}, NaiveText(1));
  } else if (kind < 58) {
    const std::wstring text = anyText(20);
    put(from, to, spanOf(text, naive_.style), naiveText(text, naive_.style));
  } else if (kind < 66) {
    put(from, to, held_, naiveHeld_);
  } else if (kind < 72) {
    copy();
  } else if (kind < 84) {
    undo(false);
  } else if (kind < 90) {
    undo(true);
  } else if (kind < 94) {
    search();
  } else if (kind < 96) {
    indent();
  } else if (kind == 96) {
    naive_.setLineEnds(upTo(1) == 0 ? LineEndStyle::Lf : LineEndStyle::CrLf);
    document_.setLineEnds(naive_.style);
  } else if (kind == 97) {
    replaceEverything();
  } else if (kind == 98) {
    changePage();
  } else {
    const std::string bytes = writtenBytes(document_, encoding_);
    if (bytes != "refused") reload(bytes);
  }
}

void Model::compare() {
  ASSERT_EQ(document_.lineCount(), static_cast<int64_t>(naive_.lines.size()));
  for (int64_t line = 0; line < document_.lineCount(); ++line) {
    const std::wstring& text = naive_.lines[static_cast<size_t>(line)].text;
    ASSERT_EQ(document_.text(line), text) << "line " << line;
  }
  ASSERT_EQ(document_.lineEndStyle(), naive_.style);
  ASSERT_EQ(cursor_, naiveCursor_);
  ASSERT_EQ(document_.clamped(cursor_), cursor_);
  ASSERT_EQ(writtenBytes(document_, encoding_), naive_.bytes(encoding_));
}
}  // namespace

TEST(DocumentModel, RandomCommandsGiveWhatAPlainListOfLinesGives) {
  const TextEncoding encodings[] = {{TextFormat::Utf8, 0},       {TextFormat::CodePage, 1252},
                                    {TextFormat::Utf16Le, 0},    {TextFormat::Utf32Be, 0},
                                    {TextFormat::CodePage, 850}, {TextFormat::CodePage, 932}};
  const char* wanted = std::getenv("TD_MODEL_SEED");
  unsigned seed = wanted ? static_cast<unsigned>(std::atol(wanted)) : std::random_device{}();
  std::cout << "first seed " << seed << "\n";
  const long count = commandCount();
  ASSERT_GT(count, 0);
  for (long done = 0; done < count; ++seed) {
    Model model(seed, encodings[seed % std::size(encodings)]);
    for (int step = 0; step < StepsOfOneText; ++step, ++done) {
      model.command();
      model.compare();
      if (testing::Test::HasFatalFailure()) {
        ADD_FAILURE() << "TD_MODEL_SEED=" << seed << ", command " << step;
        return;
      }
    }
  }
}
