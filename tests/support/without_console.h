#pragma once

#include <gtest/gtest.h>

#include "console/console.h"

// Tests of what is there before the screen stands: boxes don't wait for a key, nothing is drawn. A
// console that another test of the process has begun is out of sight meanwhile.
class WithoutConsole : public testing::Test {
 protected:
  WithoutConsole() : aside_(console.standing_.exchange(nullptr)) {}
  ~WithoutConsole() override { console.standing_ = aside_; }

 private:
  CConsole* const aside_;
};
