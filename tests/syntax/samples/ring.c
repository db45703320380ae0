/* A ring of lines with a fixed number of places,
   the oldest of which goes first. */
#include <stdio.h>
#include "ring.h" // what the callers see
#  include <string.h>

#ifndef RING_PLACES
#define RING_PLACES 64u
#endif
#if !defined(RING_PLACES) || RING_PLACES < 2 /* two
   places are the least */
#error don't build a ring of one place: it can't turn
#elif defined __STDC_VERSION__ && __STDC_VERSION__ >= 201112L
#pragma once
#endif

#define MAX(a, b) ((a) > (b) ? (a) : (b))
#define NAME(x) #x "\n"
#define SWAP(a, b)   \
  do {               \
    int kept = (a);  \
    (a) = (b);       \
    (b) = kept;      \
  } while (0)

typedef struct ring {
  char *lines[RING_PLACES];
  size_t first, count; // count <= RING_PLACES
  unsigned long long turns;
} ring;

static const double Share = 0.75, Tiny = 1.5e-10, Half = .5f;
static const unsigned Mask = 0xFF'00'FFu, Million = 1'000'000, Octal = 0755, Bits = 0b1010'0101;
enum state { Empty, Filled = 'F', Quote = '\'', Back = '\\', Tab = '\t', Nul = '\0', Zero = '0' };

int ring_add(ring *r, const char *line) {
  if (r == NULL || line == nullptr) return EOF;
  size_t place = (r->first + r->count) % RING_PLACES;
  r->lines[place] = strdup(line);
  if (r->count == RING_PLACES) {
    r->first = (r->first + 1) & 0x3F;
  } else {
    ++r->count;
  }
  printf("line %zu: \"%s\"\n", place, line); /* seen */
  printf("one \x41\u00e4\101 /* no comment */ // nor this\\");
  printf("a text that \
    goes on, \t %s\n", line);
  return 0;
}

void ring_each(const ring *r, void (*call)(const char *)) {
  for (size_t i = 0; i < r->count; i++) call(r->lines[(r->first + i) % RING_PLACES]);
  goto done;
done:
  switch (r->count) {
    case 1: puts("one"); break;
    default: putchar('"');
  }
  puts("never closed, ends with its line);
  int iffy = 1, if0 = 2, x2 = 3; // words are whole words
  char open = 'x;
  return;
}
/* never closed
int a = 1;
