#pragma once

#include "nowplaying/PlayPeriod.h"

#include <string>

namespace velmor {

/// The newest entry of djay Pro's history.
struct HistoryItem {
  std::string title;
  std::string artist;
  /// 32 lower-case hexadecimal digits that identify the media item; "" when there are none.
  std::string titleID;
  PlayPeriod period;
};

} // namespace velmor
