#pragma once

#include "platform/Accessibility.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>

namespace velmor {

class AtspiBus;
class Environment;
class WindowProperties;

/// Accessibility over D-Bus alone: the usual library ends the process where there is no
/// accessibility bus, and waits long for hung programs.
///
/// Without a bus, or where it is switched off, every read gives `apiDisabled`. Reads end at once
/// when `quitToken` asks for it.
class AtspiAccessibility : public Accessibility {
public:
  /// Environment and properties must outlive it.
  AtspiAccessibility(const Environment& theEnvironment, const WindowProperties& windowProperties,
                     std::stop_token quitToken);
  ~AtspiAccessibility() override;

  AccessibilityElementPtr application(std::int32_t processIdentifier) override;

private:
  [[nodiscard]] std::shared_ptr<AtspiBus> openBus();

  const Environment& environment;
  const WindowProperties& properties;
  std::stop_token quit;
  std::mutex mutex;
  /// Kept open: programs keep their caches only for as long.
  std::shared_ptr<AtspiBus> bus;
};

} // namespace velmor
