#pragma once

#include "platform/PlatformRecord.h"

namespace velmor {

class MprisBusSource;
class ProcessLauncher;

/// Where tools lie on Linux, and how sound is captured there; media players are asked over
/// the session bus. Launcher and players must outlive the record.
[[nodiscard]] PlatformRecord linuxRecord(ProcessLauncher& processes, MprisBusSource& players);

} // namespace velmor
