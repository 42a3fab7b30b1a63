#pragma once

#include "platform/PlatformRecord.h"

namespace velmor {

class ProcessLauncher;

/// Where tools lie on Linux, and how sound is captured there. The launcher must outlive the record.
[[nodiscard]] PlatformRecord linuxRecord(ProcessLauncher& processes);

} // namespace velmor
