#pragma once

#include "tests/platform/TemporaryFolder.h"

#include <sys/types.h>

namespace velmor {

/// A session bus of the test's own, which knows no services to start.
class PrivateBus {
public:
  PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus();

  std::string address;

private:
  TemporaryFolder folder;
  pid_t daemon = 0;
};

} // namespace velmor
