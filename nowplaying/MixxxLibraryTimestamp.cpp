#include "model/Number.h"
#include "model/Text.h"
#include "nowplaying/MixxxLibrary.h"

#include <algorithm>
#include <array>
#include <ctime>

namespace velmor {

namespace {

/// What a date and time may look like; a 0 stands for any digit.
constexpr std::array<std::string_view, 3> shapes{"0000-00-00 00:00:00", "0000-00-00T00:00:00.000Z",
                                                 "0000-00-00T00:00:00Z"};
constexpr std::size_t fractionPosition = 20;

bool hasShape(std::string_view text, std::string_view shape) {
  constexpr auto fits = [](char character, char expected) {
    return expected == '0' ? character >= '0' && character <= '9' : character == expected;
  };
  return std::ranges::equal(text, shape, fits);
}

int digits(std::string_view text, std::size_t position, std::size_t length) {
  return number::parseInteger<int>(text.substr(position, length)).value_or(0);
}

bool isSameMoment(const std::tm& one, const std::tm& other) {
  return one.tm_year == other.tm_year && one.tm_mon == other.tm_mon &&
         one.tm_mday == other.tm_mday && one.tm_hour == other.tm_hour &&
         one.tm_min == other.tm_min && one.tm_sec == other.tm_sec;
}

} // namespace

// A final Z says universal time, yet every form is read in local time: the log has always been
// read so, and another reading would find other tracks playing.
std::optional<PlayPeriod::Moment> MixxxLibrary::parseMixxxTimestamp(std::string_view text) {
  const auto date = text::trimmed(text);
  const auto fits = [&](std::string_view shape) { return hasShape(date, shape); };
  if (std::ranges::none_of(shapes, fits)) return std::nullopt;

  std::tm written{};
  written.tm_year = digits(date, 0, 4) - 1900;
  written.tm_mon = digits(date, 5, 2) - 1;
  written.tm_mday = digits(date, 8, 2);
  written.tm_hour = digits(date, 11, 2);
  written.tm_min = digits(date, 14, 2);
  written.tm_sec = digits(date, 17, 2);
  written.tm_isdst = -1;
  std::tm local = written;
  const auto seconds = std::mktime(&local);
  // A day or an hour that the calendar does not have comes out as another one.
  if (!isSameMoment(written, local)) return std::nullopt;
  const bool hasFraction = hasShape(date, shapes[1]);
  const double fraction = hasFraction ? digits(date, fractionPosition, 3) / 1000.0 : 0;
  return PlayPeriod::Moment(Seconds(static_cast<double>(seconds) + fraction));
}

} // namespace velmor
