#pragma once

#include "crate/CrateReading.h"
#include "platform/Platform.h"

namespace velmor {

/// Where this user's music is described: Mixxx's libraries, and the folders and collection files
/// that VELMOR_CRATE names, else the user's music folder. Looks at files; any thread.
[[nodiscard]] CratePlaces placesOfMusic(const Platform& platform);

} // namespace velmor
