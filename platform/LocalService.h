#pragma once

#include <functional>
#include <memory>
#include <string>

namespace velmor {

/// A connection between two running programs of the same user, which tell each other lines.
/// Destroying it ends it. Main thread only; the handlers run in the actor lane.
class LocalConnection {
public:
  /// In bytes. The connection ends when the other side sends a longer line.
  static constexpr std::size_t longestLine = std::size_t{4} << 20;

  virtual ~LocalConnection() = default;

  /// Calls `onLine` for each line from the other side, without its line feed, then `onEnd` once,
  /// when the other side has gone. Call it once only, before anything else is done in the lane.
  virtual void read(std::function<void(const std::string&)> onLine,
                    std::function<void()> onEnd) = 0;

  /// Sends a line, which has no line feed in it. Never waits: the connection to somebody who does
  /// not read ends. What is sent to one that has gone is lost.
  virtual void send(const std::string& line) = 0;
};

/// How the running window and Velmor's other programs find each other. Main thread only.
class LocalService {
public:
  virtual ~LocalService() = default;

  /// Lets other programs of this user, and nobody else, connect from now on, for as long as the
  /// program runs; each new connection is handed over in the actor lane. False when another
  /// program offers that already, or the system has no place for it.
  virtual bool offer(std::function<void(std::shared_ptr<LocalConnection>)> onConnection) = 0;

  /// A connection to the program that offers one; null when there is none. Never waits.
  [[nodiscard]] virtual std::shared_ptr<LocalConnection> connect() = 0;
};

} // namespace velmor
