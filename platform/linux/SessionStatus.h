#pragma once

#include "platform/SystemStatus.h"

#include <stop_token>

namespace velmor {

class Environment;

/// The services of a Linux desktop session.
class SessionStatus final : public SystemStatus {
public:
  SessionStatus(const Environment& theEnvironment, std::stop_token quitToken);

  [[nodiscard]] std::vector<SystemService> services() override;

private:
  [[nodiscard]] SystemService display() const;
  [[nodiscard]] SystemService sessionBus() const;
  [[nodiscard]] SystemService accessibilityBus() const;
  [[nodiscard]] SystemService soundServer() const;

  const Environment& environment;
  std::stop_token quit;
};

} // namespace velmor
