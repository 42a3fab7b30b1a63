#pragma once

#include "platform/SystemLog.h"

#include <string_view>

namespace velmor {

class Environment;

/// The system's syslog. Lines also go to standard error when that is a terminal, or when
/// VELMOR_LOG_STDERR is set.
class Syslog final : public SystemLog {
public:
  explicit Syslog(const Environment& environment);
  Syslog(const Syslog&) = delete;
  Syslog& operator=(const Syslog&) = delete;
  ~Syslog() override;

  void write(std::string_view line) override;

private:
  bool copiesToStandardError;
};

} // namespace velmor
