#pragma once

#include "platform/SystemStatus.h"

namespace velmor {

class FakeSystemStatus : public SystemStatus {
public:
  std::vector<SystemService> services() override { return present; }
  std::vector<SystemService> present;
};

} // namespace velmor
