#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace velmor {

/// Cuts what comes in pieces into lines.
class LineBuffer {
public:
  /// Calls `onLine` with each line that is whole now, without its line feed.
  template <typename Handler>
  void take(std::string_view piece, Handler onLine) {
    for (auto feed = piece.find('\n'); feed != std::string_view::npos; feed = piece.find('\n')) {
      rest += piece.substr(0, feed);
      piece.remove_prefix(feed + 1);
      onLine(std::exchange(rest, {}));
    }
    rest += piece;
  }

  /// The beginning of a line that has not ended yet.
  [[nodiscard]] const std::string& unfinished() const { return rest; }

private:
  std::string rest;
};

} // namespace velmor
