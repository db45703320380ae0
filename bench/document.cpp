// bench_document WORK FILE: one thing that the editor does with a text, in milliseconds.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <malloc.h>

#include "bench_support.h"
#include "editor/document/document.h"
#include "editor/document/document_search.h"
#include "editor/document/undo.h"

namespace {
constexpr int Runs = 9;
constexpr TextEncoding Utf8{TextFormat::Utf8, 0};

std::string fileBytes(const char* path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<size_t>(file.tellg()), '\0');
  file.seekg(0);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
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
  const size_t bytes = document.lineOfByte(INT64_MAX).line > 0 ? fileBytes(path).size() : 1;
  const size_t used = mallinfo2().uordblks + mallinfo2().hblkhd - before;
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

double replaceEverything(Document& document, const std::string& step) {
  EditHistory history;
  const SearchQuery query{L"needle", SearchCase::Respected};
  TextPlace cursor;
  int64_t count = 0;
  const double replace = onceMs([&] {
    count = replaceAll(document, history, query, TextSpan::fromText(L"thread", LineEndStyle::Lf),
                       {0, 0}, history.newReplaceAll())
                .count;
  });
  std::fprintf(stderr, "%ld hits\n", static_cast<long>(count));
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
  if (work == "search") return search(document, SearchCase::Respected);
  if (work == "search-any-case") return search(document, SearchCase::Ignored);
  if (work == "paste" || work == "undo" || work == "redo") return pasteAndBack(document, work);
  return replaceEverything(document, work);
}

// Written to `target` by the plainest means, and synced.
int save(const char* path, const char* target, bool edits) {
  Document document;
  document.load(fileBytes(path), Utf8);
  if (edits) document.replace({1, 0}, {1, 0}, TextSpan::fromText(L"x", LineEndStyle::Lf));
  std::FILE* file = std::fopen(target, "wb");
  if (!file) return 1;
  const Document::Written written = document.write(Utf8, [file](std::string_view bytes) {
    return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() ? 0 : errno;
  });
  return written.error != 0 || std::fclose(file) != 0 ? 1 : 0;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc == 4) return save(argv[2], argv[3], std::strcmp(argv[1], "save-edited") == 0);
  if (argc != 3) return 2;
  std::printf("%.3f\n", measured(argv[1], argv[2]));
}
