#pragma once

#include <functional>
#include <string>

namespace velmor {

/// The program's standard input, line by line. Main thread only.
class LineInput {
public:
  virtual ~LineInput() = default;

  /// Calls `onLine` in the actor lane for each line (raw bytes, without the line feed; the last
  /// line may lack it), then `onEnd` once. Input that cannot be read counts as ended. Ends early,
  /// without a call, when Velmor quits. Call it once only.
  virtual void read(std::function<void(std::string)> onLine, std::function<void()> onEnd) = 0;
};

} // namespace velmor
