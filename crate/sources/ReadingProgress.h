#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace velmor {

/// How far a reading of the sources is. The thread that reads tells it, others may look and may ask
/// it to stop.
class ReadingProgress {
public:
  /// What is told from now on is about one of so many sources.
  void beginSource(std::size_t index, std::size_t count) {
    start = static_cast<double>(index) / static_cast<double>(count);
    share = 1.0 / static_cast<double>(count);
    done = start;
  }
  /// So much of the source has been read.
  void tell(std::size_t part, std::size_t whole) {
    const auto most = static_cast<double>(std::max<std::size_t>(whole, 1));
    done = start + share * std::min(1.0, static_cast<double>(part) / most);
  }

  /// 0 to 1.
  [[nodiscard]] double value() const { return done; }

  void stop() { stopped = true; }
  [[nodiscard]] bool isStopped() const { return stopped; }

private:
  double start = 0;
  double share = 1;
  std::atomic<double> done{0};
  std::atomic<bool> stopped{false};
};

} // namespace velmor
