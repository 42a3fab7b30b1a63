#pragma once

#include <functional>
#include <vector>

namespace velmor {

/// Hears the signals that ask the program to end: TERM, INT and HUP. Signals that the program's
/// starter has set to be ignored stay ignored. Main thread only.
class TerminationSignals {
public:
  /// The main loop calls `onSignal` each time, and no more once this is destroyed.
  explicit TerminationSignals(std::function<void()> onSignal);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  ~TerminationSignals();

private:
  std::function<void()> heard;
  std::vector<unsigned> sources;
};

} // namespace velmor
