#include "crate/tracks/CrateDates.h"

#include "base/Number.h"

#include <array>
#include <chrono>
#include <ctime>

namespace velmor {

namespace {

int digits(std::string_view text, std::size_t position, std::size_t length) {
  if (text.size() < position + length) return -1;
  const auto part = text.substr(position, length);
  if (part.find_first_not_of("0123456789") != std::string_view::npos) return -1;
  return number::parseInteger<int>(part).value_or(-1);
}

std::tm localTime(CrateTime time) {
  const auto seconds = static_cast<std::time_t>(time);
  std::tm local{};
  ::localtime_r(&seconds, &local);
  return local;
}

} // namespace

int CrateDates::year(std::string_view text) {
  const int value = digits(text, 0, 4);
  return value > 1900 && value < 2200 ? value : 0;
}

CrateTime CrateDates::universalTime(std::string_view text) {
  using namespace std::chrono;
  constexpr std::size_t dateLength = 10;
  if (text.size() < dateLength || text[4] != '-' || text[7] != '-') return 0;
  const int month = digits(text, 5, 2);
  const int day = digits(text, 8, 2);
  const auto date = std::chrono::year{year(text)} /
                    std::chrono::month{static_cast<unsigned>(month)} /
                    std::chrono::day{static_cast<unsigned>(day)};
  if (!date.ok() || year(text) == 0) return 0;
  const auto midnight = sys_seconds(sys_days(date)).time_since_epoch();
  if (text.size() == dateLength) return midnight.count();
  const int hour = digits(text, 11, 2);
  const int minute = digits(text, 14, 2);
  const int second = digits(text, 17, 2);
  if (hour < 0 || minute < 0 || second < 0) return 0;
  return (midnight + hours(hour) + minutes(minute) + seconds(second)).count();
}

std::string CrateDates::day(CrateTime time, CrateTime now) {
  constexpr std::array<const char*, 12> months{"January",   "February", "March",    "April",
                                               "May",       "June",     "July",     "August",
                                               "September", "October",  "November", "December"};
  const auto date = localTime(time);
  const auto today = localTime(now);
  auto text = std::to_string(date.tm_mday) + " " + months.at(static_cast<std::size_t>(date.tm_mon));
  if (date.tm_year != today.tm_year) text += " " + std::to_string(date.tm_year + 1900);
  return text;
}

std::string CrateDates::isoDay(CrateTime time) {
  if (time == 0) return "";
  const auto date = localTime(time);
  std::array<char, 16> text{};
  const auto length = std::strftime(text.data(), text.size(), "%F", &date);
  return {text.data(), length};
}

} // namespace velmor
