#include "viewer/view_percent.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "support/exact_text.h"

TEST(ViewPercent, IsExactForEverySize) {
  struct {
    int64_t bottom;
    int64_t size;
    EndShows end;
    const wchar_t* text;
  } const rows[] = {
      {0, 0, EndShows::No, L"100.00%"},
      {0, 1, EndShows::No, L"  0.00%"},
      {1, 3, EndShows::No, L" 33.33%"},
      {2, 3, EndShows::No, L" 66.66%"},
      {1, 3, EndShows::Yes, L"100.00%"},
      {99'999, 100'000, EndShows::No, L" 99.99%"},
      {INT64_MAX / 2, INT64_MAX, EndShows::No, L" 49.99%"},
      {INT64_MAX, INT64_MAX, EndShows::No, L"100.00%"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(std::wstring(viewPercent(row.bottom, row.size, row.end).data()), row.text)
        << row.bottom << " of " << row.size;
  }
}
