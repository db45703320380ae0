// A file in the viewer: whatever it holds, its lines are the same forward, backward and counted, as
// a plain reader finds them, and every hit of a search is found in both directions.

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "foundation/utf8.h"
#include "viewer/file_search.h"
#include "viewer/line_cells.h"
#include "viewer/line_counter.h"
#include "viewer/naive_lines.h"

namespace {

void expect(bool holds) {
  if (!holds) abort();
}

constexpr size_t InputsForAThread = 16;

bool never() {
  return false;
}

void checkLines(ViewedFile& file, const std::vector<int64_t>& starts) {
  std::vector<int64_t> forward;
  for (int64_t at = file.textStart(); at < file.size(); at = file.nextLine(at)) {
    forward.push_back(at);
  }
  expect(forward == starts);
  int64_t at = file.size();
  for (size_t i = starts.size(); i-- > 0;) {
    at = file.previousLine(at);
    expect(at == starts[i]);
  }
  LineCounter counter(file);
  expect(counter.find(INT64_MAX, never).lines == static_cast<int64_t>(starts.size()));
  if (starts.empty()) return;
  const size_t middle = starts.size() / 2;
  expect(counter.find(static_cast<int64_t>(middle), never).position == starts[middle]);
}

void checkText(ViewedFile& file) {
  LineCells cells(file);
  for (int64_t at = file.textStart(); at < file.size(); at = file.nextLine(at)) {
    const ViewedLine line = file.lineAt(at);
    const std::wstring text = file.text(line, INT64_MAX);
    const int64_t length = cells.length(line, INT64_MAX);
    expect(length >= static_cast<int64_t>(text.size()));
    expect(static_cast<int64_t>(cells.text(line, 0, length + 1).size()) == length);
    expect(cells.positionOf(line, length) == line.textEnd);
  }
}

std::vector<int64_t> hits(ViewedFile& file, SearchValues values) {
  std::vector<int64_t> found;
  int64_t from = values.reverse ? file.size() : 0;
  for (;;) {
    const SearchHit hit = searchFile(file, values, from, never);
    if (hit.result != SearchHit::Result::Found) break;
    found.push_back(hit.position);
    from = values.reverse ? hit.end() - 1 : hit.position + 1;
  }
  if (values.reverse) found = {found.rbegin(), found.rend()};
  return found;
}

void checkSearch(ViewedFile& file, const std::wstring& text, int flags) {
  SearchValues values;
  values.text = text.c_str();
  values.caseSensitive = flags & 1;
  values.wholeWord = flags & 2;
  const std::vector<int64_t> forward = hits(file, values);
  values.reverse = true;
  expect(hits(file, values) == forward);
}

}  // namespace

// The first bytes say how the rest is read.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t HeadBytes = 3;
  if (size < HeadBytes) return 0;
  const std::string content(reinterpret_cast<const char*>(data) + HeadBytes, size - HeadBytes);
  const int fd = memfd_create("viewed", MFD_CLOEXEC);
  expect(write(fd, content.data(), content.size()) == static_cast<ssize_t>(content.size()));
  const std::string path = "/proc/self/fd/" + std::to_string(fd);
  const int64_t searched = 32 << (data[1] & 3);
  ViewLimits limits{searched >> (data[1] >> 2 & 3), searched};
  // Threads for every input would be most of the work.
  if (size % InputsForAThread != 0) limits.alone = INT64_MAX;
  ViewedFile file(limits);
  const TextEncoding encoding{static_cast<TextFormat>(data[0] % 7), 850};
  expect(file.open(decodeFileName(path.c_str()), encoding) == 0);
  const NaiveLines naive(content, file.encoding().format, file.textStart(), searched);
  checkLines(file, naive.starts());
  checkText(file);
  if (!naive.starts().empty()) {
    const std::wstring text = file.text(file.lineAt(naive.starts().back()), 3);
    if (text.find(L'\0') == std::wstring::npos) checkSearch(file, text, data[2]);
  }
  file.close();
  close(fd);
  return 0;
}
