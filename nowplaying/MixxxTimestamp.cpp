#include "model/Text.h"
#include "nowplaying/MixxxLibrary.h"

#include <algorithm>
#include <ctime>
#include <iomanip>
#include <locale>
#include <sstream>

namespace velmor {

namespace {

bool isSameMoment(const std::tm& one, const std::tm& other) {
  return one.tm_year == other.tm_year && one.tm_mon == other.tm_mon &&
         one.tm_mday == other.tm_mday && one.tm_hour == other.tm_hour &&
         one.tm_min == other.tm_min && one.tm_sec == other.tm_sec;
}

/// The fraction of a second in what follows the seconds: nothing, "Z" or ".123Z".
std::optional<double> fraction(std::string_view rest, bool isTimeMarked) {
  if (!isTimeMarked) return rest.empty() ? std::optional(0.0) : std::nullopt;
  if (!rest.ends_with('Z')) return std::nullopt;
  rest.remove_suffix(1);
  if (rest.empty()) return 0.0;
  if (!rest.starts_with('.')) return std::nullopt;
  rest.remove_prefix(1);
  constexpr std::size_t decimals = 3;
  constexpr auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
  if (rest.size() != decimals || !std::ranges::all_of(rest, isDigit)) return std::nullopt;
  return std::stoi(std::string(rest)) / 1000.0;
}

} // namespace

// Mixxx writes universal time and the final Z says so, but the log is read in local time: that is
// what its times have always meant here, and a rule that changes would find other tracks playing.
std::optional<PlayPeriod::Moment> MixxxLibrary::parseMixxxTimestamp(std::string_view text) {
  constexpr std::size_t dateLength = std::string_view("yyyy-MM-dd").size();
  constexpr std::size_t length = std::string_view("yyyy-MM-dd HH:mm:ss").size();
  const auto trimmed = text::trimmed(text);
  if (trimmed.size() < length) return std::nullopt;
  const bool isTimeMarked = trimmed[dateLength] == 'T';
  const auto subsecond = fraction(trimmed.substr(length), isTimeMarked);
  if (!subsecond) return std::nullopt;

  std::istringstream input{std::string(trimmed.substr(0, length))};
  input.imbue(std::locale::classic());
  std::tm parsed{};
  input >> std::get_time(&parsed, isTimeMarked ? "%Y-%m-%dT%H:%M:%S" : "%Y-%m-%d %H:%M:%S");
  if (!input || input.tellg() != std::streamoff(length)) return std::nullopt;
  parsed.tm_isdst = -1;
  std::tm local = parsed;
  const auto seconds = std::mktime(&local);
  // A day or an hour that the calendar does not have comes out as another one.
  if (!isSameMoment(parsed, local)) return std::nullopt;
  return PlayPeriod::Moment(Seconds(static_cast<double>(seconds) + *subsecond));
}

} // namespace velmor
