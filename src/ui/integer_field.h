#pragma once

#include "ui/string_field.h"

// The text of an IntegerField: a base, so that it outlives the StringField that edits it.
struct IntegerText {
  Westring digits;
};

// A number typed as decimal digits into the caller's variable, live.
class IntegerField : private IntegerText, public StringField {
 public:
  static constexpr int MostDigits = 18;

  // KeepFormat::Yes leaves the text as typed as long as it stands for the value.
  IntegerField(Dialog& dialog, int x, int y, Group group, int* value, int width,
               KeepFormat keepFormat, FieldHistory history);

  bool handleMessage(const Message& message) override;
  void draw() override;

 private:
  int* value_;
  KeepFormat keepFormat_;
};

// As strtol in base 10 goes, limited to the range of an int.
int parseInteger(const Westring& text);
