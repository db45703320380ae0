#pragma once

// The code pages that a user steps through: the numbers of the option TranslateCP, with commas,
// then the default page, then the numbers again. The place in the list is kept for the run.
// Application thread.
class CodePageList {
 public:
  enum class Number { Good, Unknown };  // Unknown: no page of the system
  struct Step {
    int page = 0;  // 0: the default one, also where the number is its own
    Number number = Number::Good;
  };

  Step next();
  void restart() { taken_ = 0; }

 private:
  int taken_ = 0;  // numbers of the list
};

CodePageList& codePageList();
