#pragma once

#include "platform/FileWatcher.h"

namespace velmor {

/// Watches with inotify; what it reports arrives through GLib's main context.
class InotifyWatcher final : public FileWatcher {
public:
  [[nodiscard]] std::unique_ptr<FileWatch> watch(const WatchedPlaces& places,
                                                 std::function<void()> changed) override;
};

} // namespace velmor
