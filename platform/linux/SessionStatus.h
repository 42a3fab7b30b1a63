#pragma once

#include "platform/SystemStatus.h"

#include <stop_token>

namespace velmor {

class Environment;
class WindowProperties;

/// The services of a Linux desktop session.
class SessionStatus final : public SystemStatus {
public:
  /// Environment and properties must outlive it.
  SessionStatus(const Environment& theEnvironment, const WindowProperties& windowProperties,
                std::stop_token quitToken);

  [[nodiscard]] std::vector<SystemService> services() override;

private:
  [[nodiscard]] SystemService display() const;
  [[nodiscard]] SystemService windowManager() const;
  [[nodiscard]] SystemService sessionBus() const;
  [[nodiscard]] SystemService accessibilityBus() const;
  [[nodiscard]] SystemService soundServer() const;

  const Environment& environment;
  const WindowProperties& properties;
  std::stop_token quit;
};

} // namespace velmor
