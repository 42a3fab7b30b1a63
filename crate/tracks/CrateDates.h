#pragma once

#include "crate/tracks/CrateTrack.h"

#include <string>
#include <string_view>

namespace velmor {

/// Dates as DJ programs and tags write them. Nothing here fails; any thread.
struct CrateDates {
  /// The year that the text begins with ("2020", "2019-05-01"); 0 when that is none after 1900.
  [[nodiscard]] static int year(std::string_view text);

  /// A moment in universal time, "2026-11-23 11:43:38" or "2026-11-23T11:39:20.665Z"; 0 for
  /// anything else. A date alone is its midnight.
  [[nodiscard]] static CrateTime universalTime(std::string_view text);

  /// The day in local time, "2026-10-03"; "" for 0.
  [[nodiscard]] static std::string isoDay(CrateTime time);

  /// The day in words, in local time: "3 October", with the year when it is not that of `now`.
  [[nodiscard]] static std::string day(CrateTime time, CrateTime now);
};

} // namespace velmor
