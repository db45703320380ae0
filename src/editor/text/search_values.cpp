#include "editor/text/search_values.h"

SearchValues& searchValues() {
  static SearchValues values;
  return values;
}
