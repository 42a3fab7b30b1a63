#pragma once

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

struct _GDBusConnection;
struct _GVariant;

namespace velmor {

/// A D-Bus value; null for none.
using DBusValue = std::shared_ptr<_GVariant>;

/// A method call to be made.
struct DBusCall {
  /// The bus name that is called.
  std::string destination;
  std::string path;
  std::string interface;
  std::string method;
  /// The type of the answer; an answer of another type counts as none.
  std::string answerType;
  /// A tuple; null for a method without arguments.
  DBusValue arguments{};
  /// Whether the bus may start the program behind the name.
  bool startsProgram = false;
};

/// What came of a call.
struct DBusAnswer {
  /// A tuple of the wanted type; null when the call failed.
  DBusValue value{};
  /// Nobody answered, which is not the same as answering with an error.
  bool timedOut = false;
};

/// A connection to a message bus of its own. Safe to use from any thread, with or without a main
/// loop: answers are awaited on a context that belongs to the call.
class DBusConnection {
public:
  /// Connects to the session bus that the environment names, or that lies at its usual place;
  /// null when there is none. A bus is never started. Calls end at once when `stop` is requested.
  [[nodiscard]] static std::shared_ptr<DBusConnection> toSessionBus(std::stop_token stop);

  /// Connects to the bus at this address; null when nobody answers there.
  [[nodiscard]] static std::shared_ptr<DBusConnection> toAddress(const std::string& address,
                                                                 std::stop_token stop);

  DBusConnection(std::shared_ptr<_GDBusConnection> opened, std::stop_token stop);

  /// False once the bus has gone away.
  [[nodiscard]] bool isOpen() const;

  /// Makes all calls at once and waits until each has its answer, or `deadline` has passed since.
  /// The answers stand in the order of the calls.
  [[nodiscard]] std::vector<DBusAnswer> exchange(const std::vector<DBusCall>& calls,
                                                 std::chrono::milliseconds deadline) const;

  /// Makes one call.
  [[nodiscard]] DBusAnswer call(const DBusCall& call, std::chrono::milliseconds deadline) const;

private:
  std::shared_ptr<_GDBusConnection> connection;
  std::stop_token stopToken;
};

} // namespace velmor
