// The small parts that everything else is made of.

#include <benchmark/benchmark.h>

#include "foundation/fold.h"
#include "foundation/text_format.h"
#include "foundation/utf8.h"
#include "foundation/wild_match.h"
#include "language/filter_expression.h"
#include "panels/picture/entry_text.h"

namespace {

void decodeName(benchmark::State& state) {
  wchar_t buffer[64];
  for (auto _ : state) benchmark::DoNotOptimize(decodeFileName("file-0000001234.text", buffer));
}
BENCHMARK(decodeName);

void compareTwoNames(benchmark::State& state) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(compareNames(L"file-0000001234.text", L"file-0000001235.text"));
  }
}
BENCHMARK(compareTwoNames);

void matchMask(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(wildMatch(L"*.{c,h,cpp}", L"directory_reader.cpp"));
}
BENCHMARK(matchMask);

void filterEntry(benchmark::State& state) {
  EntryPtr item(newEntry(L"directory_reader.cpp"));
  item->size = 123456;
  for (auto _ : state) benchmark::DoNotOptimize(evaluateFilter(L"%size>100k & !*.tmp", item.get()));
}
BENCHMARK(filterEntry);

void groupedSize(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(formatSize(1234567890, 12));
}
BENCHMARK(groupedSize);

void shortPath(benchmark::State& state) {
  Westring path = L"/home/somebody/projects/tandem/src/panels/directory_reader.cpp";
  for (auto _ : state) benchmark::DoNotOptimize(shortenPath(path, 38));
}
BENCHMARK(shortPath);

}  // namespace

BENCHMARK_MAIN();
