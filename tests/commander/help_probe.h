#pragma once

#include <functional>

#include "ui/help_window.h"

// Stands for the help while it lives: F1 calls `shown`.
class HelpProbe : public HelpWindow {
 public:
  explicit HelpProbe(std::function<void(HelpTopic)> shown) : shown_(std::move(shown)) {
    helpWindow().connect(*this);
  }
  ~HelpProbe() override { helpWindow().disconnect(); }
  HelpProbe(const HelpProbe&) = delete;
  HelpProbe& operator=(const HelpProbe&) = delete;

  void show(HelpTopic topic) override { shown_(topic); }

 private:
  std::function<void(HelpTopic)> shown_;
};
