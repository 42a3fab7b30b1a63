#pragma once

#include <vector>

namespace velmor {

/// Handlers of a toolkit's signals, disconnected when destroyed.
class SignalConnections {
public:
  SignalConnections() = default;
  SignalConnections(const SignalConnections&) = delete;
  SignalConnections& operator=(const SignalConnections&) = delete;
  ~SignalConnections() { disconnect(); }

  /// Calls `handler` with the signal's own arguments and then `data`. With `after` it comes behind
  /// the toolkit's own handling.
  template <typename Handler>
  void connect(void* object, const char* signal, Handler* handler, void* data, bool after = false) {
    add(object, signal, reinterpret_cast<void (*)()>(handler), data, after);
  }

  void disconnect();

private:
  struct Connection {
    void* object;
    unsigned long handler;
  };

  void add(void* object, const char* signal, void (*handler)(), void* data, bool after);

  std::vector<Connection> connections;
};

} // namespace velmor
