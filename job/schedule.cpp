#include "job/schedule.h"

#include <cstdio>
#include <string_view>
#include <tuple>

#include "core/elements.h"
#include "core/text.h"
#include "host/os.h"

using spindle::Count;

const spindle::Method<xSchedule> xSchedule::kMethods[] = {
    {{"formatDate", Count::kExactly, 3, {Loom::kArgDocument, Loom::kArgElement, Loom::kArgElement}},
     &xSchedule::FormatDate},
    {{"formatTime", Count::kExactly, 3, {Loom::kArgDocument, Loom::kArgElement, Loom::kArgElement}},
     &xSchedule::FormatTime},
    {{"hasTimeElapsed",
      Count::kExactly,
      3,
      {Loom::kArgDocument, Loom::kArgString, Loom::kArgString}},
     &xSchedule::HasTimeElapsed},
    {{"displayTime",
      Count::kExactly,
      4,
      {Loom::kArgDocument, Loom::kArgString, Loom::kArgString, Loom::kArgElement}},
     &xSchedule::DisplayTime},
    {{"setCurrentDateTime", Count::kExactly, 1, {Loom::kArgDocument}},
     &xSchedule::SetCurrentDateTime},
};

bool xSchedule::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xSchedule>(*this, kMethods, true, method, argc, args);
}

namespace {

using spindle::DocPtr;
using spindle::ElemPtr;

constexpr char16_t kStoredDate[] = u"ePTKWJobPrintType_Schedule_True_Date";
constexpr char16_t kStoredTime[] = u"ePTKWJobPrintType_Schedule_True_ScheduleTime";
constexpr std::size_t kStoredDateLength = 8;
constexpr std::size_t kStoredTimeLength = 4;

// The clock's fields as the run-time library's strftime writes them.
template <class... Fields>
Loom::wstring Formatted(const char* format, Fields... fields) {
  char text[16];
  std::snprintf(text, sizeof text, format, fields...);
  return spindle::Widen(text);
}

Loom::wstring EditedDateNow(const Loom::OS::LocalTime& now) {
  return Formatted("%04d-%02d-%02d", now.year, now.month, now.day);
}
Loom::wstring EditedTimeNow(const Loom::OS::LocalTime& now) {
  return Formatted("%02d:%02d:%02d", now.hour, now.minute, now.second);
}

// `field` with leading "0"s up to two characters.
Loom::wstring TwoDigits(std::u16string_view field) {
  Loom::wstring padded(field);
  while (padded.size() < 2) padded.insert(padded.begin(), u'0');
  return padded;
}

// `text` from `from` up to the next `separator` (or its end); `from` moves past it.
std::u16string_view NextField(std::u16string_view text, std::size_t& from, char16_t separator) {
  if (from >= text.size()) return {};
  const std::size_t end = text.find(separator, from);
  const std::u16string_view field =
      text.substr(from, end == std::u16string_view::npos ? std::u16string_view::npos : end - from);
  from = end == std::u16string_view::npos ? text.size() : end + 1;
  return field;
}

// The source's value, or `fallback` when it has none.
Loom::wstring EditedValue(const ElemPtr& source, const Loom::wstring& fallback) {
  Loom::wstring value = spindle::ValueOf(source);
  return value.empty() ? fallback : value;
}

// The integer of `text` at [position, position + length), as atoi reads it.
int FieldNumber(std::u16string_view text, std::size_t position, std::size_t length) {
  if (position >= text.size()) return 0;
  return spindle::LeadingInteger(text.substr(position, length));
}

}  // namespace

bool xSchedule::FormatDate(spindle::CallArgs& args) {
  const ElemPtr& source = args.elem(1);
  const ElemPtr& target = args.elem(2);
  if (!source || !target) return false;
  const Loom::wstring edited = EditedValue(source, EditedDateNow(Loom::OS::localTime()));
  const std::u16string_view text = edited;
  // The year is the first four characters; month and day follow the fifth, split by "-".
  constexpr std::size_t kYearLength = 4;
  std::size_t from = kYearLength + 1;
  const std::u16string_view month = NextField(text, from, u'-');
  const std::u16string_view day = NextField(text, from, u'-');
  Loom::wstring stored(text.substr(0, kYearLength));
  stored += TwoDigits(month) + TwoDigits(day);
  spindle::SetValue(target, stored);
  return true;
}

bool xSchedule::FormatTime(spindle::CallArgs& args) {
  const ElemPtr& source = args.elem(1);
  const ElemPtr& target = args.elem(2);
  if (!source || !target) return false;
  const Loom::wstring edited = EditedValue(source, EditedTimeNow(Loom::OS::localTime()));
  std::size_t from = 0;
  const std::u16string_view hour = NextField(edited, from, u':');
  const std::u16string_view minute = NextField(edited, from, u':');
  spindle::SetValue(target, TwoDigits(hour) + TwoDigits(minute));
  return true;
}

bool xSchedule::HasTimeElapsed(spindle::CallArgs& args) {
  const ElemPtr vars = spindle::FindById(args.doc(0), u"vars");
  if (!vars) return false;
  const Loom::wstring date = spindle::Widen(args.str(1));
  const Loom::wstring time = spindle::Widen(args.str(2));
  const auto scheduled =
      std::make_tuple(FieldNumber(date, 0, 4), FieldNumber(date, 4, 2), FieldNumber(date, 6, 2),
                      FieldNumber(time, 0, 2), FieldNumber(time, 2, 2));
  const Loom::OS::LocalTime now = Loom::OS::localTime();
  const auto current = std::make_tuple(now.year, now.month, now.day, now.hour, now.minute);
  // A schedule in the current minute has elapsed: only a later minute is still to come.
  vars->setAttribute(u"scheduleTimeElapsed",
                     Loom::wstring(spindle::BoolText(!(scheduled > current))));
  return true;
}

bool xSchedule::DisplayTime(spindle::CallArgs& args) {
  const Loom::wstring date = spindle::Widen(args.str(1));
  const Loom::wstring time = spindle::Widen(args.str(2));
  const ElemPtr& target = args.elem(3);
  if (!target || date.size() != kStoredDateLength || time.size() != kStoredTimeLength) {
    return true;
  }
  int hour = spindle::LeadingInteger(std::u16string_view(time).substr(0, 2));
  // Only hours after 12 are "PM": 12:05 shows as "12:05 AM" and 00:30 as "0:30 AM". The
  // summaries have always read so, and users compare them with printed job lists.
  std::u16string_view suffix = u"AM";
  if (hour > 12) {
    suffix = u"PM";
    hour -= 12;
  }
  const std::u16string_view d = date;
  const std::u16string_view t = time;
  Loom::wstring shown(d.substr(6, 2));
  shown += u'/';
  shown += d.substr(4, 2);
  shown += u'/';
  shown += d.substr(0, 4);
  shown += u' ';
  shown += spindle::DecimalText(hour);
  shown += u':';
  shown += t.substr(2, 2);
  shown += u' ';
  shown += suffix;
  spindle::SetValue(target, shown);
  return true;
}

bool xSchedule::SetCurrentDateTime(spindle::CallArgs& args) {
  const ElemPtr date = spindle::FindById(args.doc(0), kStoredDate);
  const ElemPtr time = spindle::FindById(args.doc(0), kStoredTime);
  if (!date || !time) return true;
  const Loom::OS::LocalTime now = Loom::OS::localTime();
  spindle::SetValue(date, Formatted("%04d%02d%02d", now.year, now.month, now.day));
  spindle::SetValue(time, Formatted("%02d%02d", now.hour, now.minute));
  return true;
}
