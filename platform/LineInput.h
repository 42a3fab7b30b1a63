#pragma once

#include <functional>
#include <string>

namespace velmor {

/// The program's standard input, line by line. Main thread only.
class LineInput {
public:
  virtual ~LineInput() = default;

  /// Calls `onLine` in the actor lane for each line (without its line feed), then `onEnd` once.
  /// Ends early, without a call, when Velmor quits.
  virtual void read(std::function<void(std::string)> onLine, std::function<void()> onEnd) = 0;
};

} // namespace velmor
