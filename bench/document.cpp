// bench_document WORK FILE: one thing that the editor does with a text, in milliseconds.
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "bench_support.h"
#include "editor/document/document.h"
#include "editor/document/document_search.h"
#include "editor/document/undo.h"
#include "editor/text/file_content.h"
#include "editor/text/text_saver.h"
#include "foundation/utf8.h"

namespace {
constexpr int Runs = 9;
constexpr TextEncoding Utf8{TextFormat::Utf8, 0};

std::string fileBytes(const char* path) {
  FileContent content;
  if (readFileContent(fromUtf8(path), content) != 0) std::exit(1);
  return std::move(content.bytes);
}

double onceMs(const std::function<void()>& work) {
  return medianMs(1, work);
}

// The longest of the middle times at the start, in the middle and at the end of the text.
double edit(Document& document, const std::function<void(TextPlace)>& change) {
  double longest = 0;
  for (const int64_t line : {int64_t{0}, document.lineCount() / 2, document.lineCount() - 2}) {
    int64_t next = line;
    longest = std::max(longest, medianMs(Runs, [&] { change({next++, 1}); }));
  }
  return longest;
}

// The same at the start, in the middle and at the end of the first line.
double editLine(Document& document, const std::function<void(TextPlace)>& change) {
  const int64_t length = document.lineLength(0);
  double longest = 0;
  for (const int64_t start : {int64_t{0}, length / 2, length - 2 * Runs}) {
    int64_t next = start;
    longest = std::max(longest, medianMs(Runs, [&] { change({0, next++}); }));
  }
  return longest;
}

double load(const char* path) {
  return medianMs(Runs, [path] {
    Document document;
    document.load(fileBytes(path), Utf8);
  });
}

// Heap beyond the bytes of the file, as a part of them.
double memory(const char* path) {
  Document document;
  const size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
  document.load(fileBytes(path), Utf8);
  const size_t used = mallinfo2().uordblks + mallinfo2().hblkhd - before;
  const size_t bytes = fileBytes(path).size();
  return (static_cast<double>(used) / static_cast<double>(bytes) - 1) * 100;
}

double pasteAndBack(Document& document, const std::string& step) {
  EditHistory history;
  const TextSpan all = document.span({0, 0}, document.end());
  TextPlace cursor;
  const double paste = onceMs([&] {
    Document::Replaced replaced = document.replace({5, 3}, {5, 3}, all);
    history.push({replaced.removed, {5, 3}, replaced.end, {5, 3}, replaced.end});
    cursor = replaced.end;
  });
  const double undo = onceMs([&] { history.undoStep(document, cursor); });
  const double redo = onceMs([&] { history.redoStep(document, cursor); });
  return step == "paste" ? paste : step == "undo" ? undo : redo;
}

double replaceEverything(Document& document, const std::string& step,
                         SearchDirection direction = SearchDirection::Forward) {
  EditHistory history;
  const SearchQuery query{L"needle", SearchCase::Respected, direction};
  TextPlace cursor;
  if (direction == SearchDirection::Backward) cursor = document.end();
  const double replace = onceMs([&] {
    replaceAll(document, history, query, TextSpan::fromText(L"thread", LineEndStyle::Lf), cursor,
               history.newReplaceAll());
  });
  cursor = history.undo.top().after;
  const double undo = onceMs([&] { history.undoStep(document, cursor); });
  const double all = onceMs([&] { history.undoCommand(document, cursor); });
  return step == "replace" ? replace : step == "undo-one" ? undo : all;
}

double search(const Document& document, SearchCase letters) {
  return medianMs(Runs, [&] {
    TextPlace place;
    findText(document, {L"not in this text", letters}, place);
  });
}

double bareSearch(const std::string& bytes) {
  return medianMs(Runs, [&] {
    const char* needle = "not in this text";
    if (memmem(bytes.data(), bytes.size(), needle, std::strlen(needle))) std::puts("there");
  });
}

double measured(const std::string& work, const char* path) {
  if (work == "load") return load(path);
  if (work == "memory") return memory(path);
  if (work == "memmem") return bareSearch(fileBytes(path));
  Document document;
  document.load(fileBytes(path), Utf8);
  if (work == "key") {
    const TextSpan typed = TextSpan::fromText(L"x", LineEndStyle::Lf);
    return edit(document, [&](TextPlace place) { document.replace(place, place, typed); });
  }
  if (work == "return") {
    const TextSpan end = TextSpan::lineEnd(L"\n");
    return edit(document, [&](TextPlace place) { document.replace(place, place, end); });
  }
  if (work == "delete-line") {
    return edit(document, [&](TextPlace place) {
      document.replace({place.line, 0}, {place.line + 1, 0}, {});
    });
  }
  if (work == "join") {
    return edit(document, [&](TextPlace place) {
      document.replace({place.line, document.lineLength(place.line)}, {place.line + 1, 0}, {});
    });
  }
  if (work == "key-in-line") {
    return editLine(document, [&](TextPlace place) {
      document.replace(place, {0, place.index + 1}, {});
      document.columnOf(place, 8);
      document.lineLength(0);
    });
  }
  if (work == "return-in-line") {
    const TextSpan end = TextSpan::lineEnd(L"\n");
    return editLine(document, [&](TextPlace place) {
      document.replace(place, place, end);
      document.replace({0, document.lineLength(0)}, {1, 0}, {});
    });
  }
  if (work == "replace-back")
    return replaceEverything(document, "replace", SearchDirection::Backward);
  if (work == "search") return search(document, SearchCase::Respected);
  if (work == "search-any-case") return search(document, SearchCase::Ignored);
  if (work == "paste" || work == "undo" || work == "redo") return pasteAndBack(document, work);
  return replaceEverything(document, work);
}

// Reads the file and saves it again, as the editor does.
int save(const char* path, bool isEdited) {
  FileContent content;
  TextSaver saver;
  if (readFileContent(fromUtf8(path), content) != 0) return 1;
  saver.opened(fromUtf8(path), content);
  Document document;
  document.load(std::move(content.bytes), Utf8);
  if (isEdited) document.replace({1, 0}, {1, 0}, TextSpan::fromText(L"x", LineEndStyle::Lf));
  const auto write = [&document](const TextSaver::Sink& sink) {
    return document.write(Utf8, sink).error;
  };
  return saver.save(write).error == 0 ? 0 : 1;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const std::string work = argv[1];
  if (work == "save" || work == "save-edited") return save(argv[2], work == "save-edited");
  std::printf("%.3f\n", measured(work, argv[2]));
}
