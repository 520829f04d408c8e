// image_time.cpp
// The time of an image on the clock on the wall.
#include "picture/image_time.h"

#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "base/platform.h"

namespace Kelcam {
namespace {

struct Digits {
  int number;
  int width;
};

// Pads with zeros.
std::ostream& operator<<(std::ostream& out, const Digits& digits) {
  return out << std::setfill('0') << std::setw(digits.width) << digits.number;
}

std::string Date(const LocalTime& time, const char* separator) {
  std::ostringstream text;
  text << Digits{time.year, 4} << separator << Digits{time.month, 2} << separator << Digits{time.day, 2};
  return text.str();
}

std::string Clock(const LocalTime& time, const char* separator) {
  std::ostringstream text;
  text << Digits{time.hour, 2} << separator << Digits{time.minute, 2} << separator << Digits{time.second, 2};
  return text.str();
}

std::string Offset(const LocalTime& time, const char* separator) {
  constexpr int kMinutesPerHour = 60;
  const int minutes = std::abs(time.offset_minutes);
  std::ostringstream text;
  text << (time.offset_minutes < 0 ? '-' : '+') << Digits{minutes / kMinutesPerHour, 2} << separator
       << Digits{minutes % kMinutesPerHour, 2};
  return text.str();
}

}  // namespace

std::string LocalTime::Basic() const {
  return Date(*this, "")
      .append("T")
      .append(Clock(*this, ""))
      .append(".")
      .append(ExifFraction())
      .append(Offset(*this, ""));
}

std::string LocalTime::Extended() const {
  return Date(*this, "-").append("T").append(Clock(*this, ":")).append(".").append(ExifFraction()).append(ExifOffset());
}

std::string LocalTime::ExifSecond() const { return Date(*this, ":").append(" ").append(Clock(*this, ":")); }

std::string LocalTime::ExifFraction() const {
  std::ostringstream text;
  text << Digits{milliseconds, 3};
  return text.str();
}

std::string LocalTime::ExifOffset() const { return Offset(*this, ":"); }

LocalTime LocalTimeOf(std::chrono::system_clock::time_point time) {
  using std::chrono::floor;
  constexpr int kFirstYear = 1900;
  const auto second = floor<std::chrono::seconds>(time);
  const std::tm parts = CalendarTime(std::chrono::system_clock::to_time_t(second));
  const LocalTime local{parts.tm_year + kFirstYear,
                        parts.tm_mon + 1,
                        parts.tm_mday,
                        parts.tm_hour,
                        parts.tm_min,
                        parts.tm_sec,
                        static_cast<int>(floor<std::chrono::milliseconds>(time - second).count())};
  const std::chrono::sys_days day = std::chrono::year(local.year) / local.month / local.day;
  const auto as_if_utc =
      day + std::chrono::hours(local.hour) + std::chrono::minutes(local.minute) + std::chrono::seconds(local.second);
  LocalTime result = local;
  result.offset_minutes = static_cast<int>(floor<std::chrono::minutes>(as_if_utc - second).count());
  return result;
}

}  // namespace Kelcam
