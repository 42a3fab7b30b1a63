#pragma once

#include "platform/PlatformRecord.h"

namespace velmor {

/// Where tools lie on Linux, and how sound is captured there.
[[nodiscard]] PlatformRecord linuxRecord();

} // namespace velmor
