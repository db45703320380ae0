#include "filecommands/date_dialog.h"

#include <array>

#include "fileops/file_date.h"
#include "foundation/locale_settings.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "ui/alert.h"
#include "ui/dialog.h"

namespace {

constexpr int Columns = 33, Lines = 12;
constexpr int UpperQuarter = -4;
constexpr int HeadRow = 0, SubjectRow = 1, DateLabelRow = 3, TimeLabelRow = 6, ButtonRow = 9;
constexpr int FirstDateColumn = 6, FirstTimeColumn = 3, ColumnStep = 6, MoreWith24Hours = 3;
constexpr int HalfColumn = 21, HalfLabelColumn = 26;
constexpr int OkColumn = 2, CancelColumn = 10, NowColumn = 22;
constexpr int SubjectWidth = 26, TwoDigits = 2, FourDigits = 4;
constexpr int HalfDayHours = 12;
constexpr Key::Code Now = 'n';

class DateDialog : public Dialog {
 public:
  DateDialog(const Westring& subject, time_t start)
      : Dialog(-1, UpperQuarter, Columns, Lines, colourOf(Colour::Messages)) {
    load(start);
    putCentred(HeadRow, L"Change date of");
    putCentred(SubjectRow, shortenPath(subject, SubjectWidth).data());
    addDate();
    addTime();
    addButton(OkColumn, ButtonRow, Group::New, Key::Enter, "OK");
    addButton(CancelColumn, ButtonRow, Group::Same, Key::Esc, "Cancel");
    addButton(NowColumn, ButtonRow, Group::Same, Now, "Now");
  }

  void load(time_t start);
  DateFields fields() const;
  time_t date() const { return timeOf(fields(), start_); }  // of valid fields

 private:
  void addDate();
  void addTime();
  void addField(int column, int labelRow, const char* label, int* value, int width);

  const bool halves_ = GlobalOptions::TimeMode == HalfDayHours;
  time_t start_ = 0;  // what the fields began with
  DateFields shown_;  // hours as they are shown
  int half_ = 0;      // a HalfDay
};

void DateDialog::load(time_t start) {
  start_ = start;
  shown_ = dateFieldsOf(timeToDos(start));
  if (!halves_) return;
  half_ = static_cast<int>(halfDayOf(shown_.hour));
  shown_.hour = hourOfHalfDay(shown_.hour);
}

DateFields DateDialog::fields() const {
  DateFields fields = shown_;
  if (halves_) fields.hour = hourOfDay(shown_.hour, static_cast<HalfDay>(half_));
  return fields;
}

void DateDialog::addField(int column, int labelRow, const char* label, int* value, int width) {
  put(column, labelRow, label);
  addInteger(column, labelRow + 1, Group::New, value, width, KeepFormat::Yes);
}

void DateDialog::addDate() {
  struct Field {
    const char* label;
    int* value;
    int width;
  };
  const Field month{"Mon", &shown_.month, TwoDigits};
  const Field day{"Day", &shown_.day, TwoDigits};
  const Field year{"Year", &shown_.year, FourDigits};
  std::array<Field, 3> order{month, day, year};
  if (localeSettings.dateOrder == DateOrder::DayMonthYear) order = {day, month, year};
  if (localeSettings.dateOrder == DateOrder::YearMonthDay) order = {year, month, day};
  int column = FirstDateColumn;
  for (const Field& field : order) {
    addField(column, DateLabelRow, field.label, field.value, field.width);
    column += ColumnStep;
  }
}

void DateDialog::addTime() {
  int column = FirstTimeColumn + (halves_ ? 0 : MoreWith24Hours);
  addField(column, TimeLabelRow, "Hour", &shown_.hour, TwoDigits);
  addField(column += ColumnStep, TimeLabelRow, "Min", &shown_.minute, TwoDigits);
  addField(column += ColumnStep, TimeLabelRow, "Sec", &shown_.second, TwoDigits);
  if (!halves_) return;
  Group group = Group::New;
  for (const auto& [half, label] :
       {std::pair{HalfDay::Morning, "AM"}, {HalfDay::Afternoon, "PM"}}) {
    const int row = TimeLabelRow + static_cast<int>(half);
    addRadio(HalfColumn, row, group, &half_, static_cast<int>(half), "");
    put(HalfLabelColumn, row, label);
    group = Group::Same;
  }
}

}  // namespace

bool askDate(const Westring& subject, time_t& date) {
  DateDialog dialog(subject, date);
  for (;;) {
    const Key::Code key = dialog.run();
    if (key == Now) {
      dialog.load(time(nullptr));
      dialog.redraw(-1);
      continue;
    }
    if (key != Key::Enter) return false;
    if (isValidDate(dialog.fields())) {
      date = dialog.date();
      return true;
    }
    if (alert("Invalid date", Westring(), AlertButtons::Ok, AlertColour::Error) ==
        Answer::ProgramEnds) {
      return false;
    }
  }
}
