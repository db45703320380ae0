// Reads a directory into a panel: list, look at each name, filter, sort. With "memory" it prints
// the heap that a listed name takes. usage: bench_read_directory DIRECTORY [memory]

#include <malloc.h>

#include <clocale>
#include <cstdio>
#include <cstring>

#include "foundation/utf8.h"
#include "panels/reader/directory_reader.h"

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  setlocale(LC_ALL, "");
  Panel panel;
  panel.path = decodeFileName(argv[1]);
  size_t before = mallinfo2().uordblks;
  int status = readListing(panel);
  size_t after = mallinfo2().uordblks;
  if (argc > 2 && strcmp(argv[2], "memory") == 0 && panel.count() > 0) {
    printf("%.1f\n", static_cast<double>(after - before) / panel.count());
  } else {
    printf("%d entries, status %d\n", panel.count(), status);
  }
  return status;
}
