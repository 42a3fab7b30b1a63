#pragma once

#include "platform/linux/glib/Variants.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

struct _GCancellable;
struct _GDBusConnection;

namespace velmor {

/// A connection to a bus; null when there is none. It may be used on any thread.
using BusConnectionPtr = std::shared_ptr<_GDBusConnection>;

/// A call of a method on a bus.
struct BusCall {
  std::string destination;
  std::string path;
  std::string interface;
  std::string method;
  /// A tuple; null for a method without arguments.
  VariantPtr arguments;
  /// The types of the wanted answer; any other answer is a failure.
  std::string replyType;
  /// Whether the bus may start a service that does not run.
  bool startsService = false;
};

/// A call of the bus itself, such as "ListNames".
[[nodiscard]] BusCall callOfBus(std::string method, VariantPtr arguments, std::string replyType);

/// Asks an object for one of its properties; `propertyIn` takes it from the answer.
[[nodiscard]] BusCall propertyCall(std::string destination, std::string path,
                                   const std::string& interface, const std::string& property);
[[nodiscard]] VariantPtr propertyIn(const VariantPtr& reply);

constexpr auto busPropertiesInterface = "org.freedesktop.DBus.Properties";

/// Waits for any number of answers from a bus at once. It has a main context of its own, so it
/// works on every thread, whatever that thread's loop is doing. What has not been answered when
/// it is destroyed is given up. Use it on one thread.
class BusWait {
public:
  using Moment = std::chrono::steady_clock::time_point;
  /// Gets the answer, a tuple; null when the call failed.
  using ReplyHandler = std::function<void(VariantPtr reply)>;

  /// Nothing is waited for after `end`, or once stop is requested.
  BusWait(Moment end, std::stop_token stopToken);
  BusWait(const BusWait&) = delete;
  BusWait& operator=(const BusWait&) = delete;
  ~BusWait();

  /// Connects to the bus with this address; null when that fails, and then nothing more can be
  /// waited for.
  [[nodiscard]] BusConnectionPtr connect(const std::string& address);

  /// Sends a call; `handler` is called within `waitUntil`.
  void call(const BusConnectionPtr& connection, const BusCall& call, ReplyHandler handler);

  /// Serves answers until `isEnough` holds or it is this late. Gives whether it holds.
  bool waitUntil(Moment moment, const std::function<bool()>& isEnough);

  /// The same with no other limit than the end of all waiting.
  bool wait(const std::function<bool()>& isEnough) { return waitUntil(lastMoment, isEnough); }

private:
  struct Pending;

  Moment lastMoment;
  std::stop_token stop;
  GlibPtr<_GMainContext> context;
  GlibPtr<_GCancellable> cancellable;
  int outstanding = 0;
  /// False once answers have nobody left to go to.
  bool isServing = true;
};

/// What came of several calls that were made at once.
struct BusExchange {
  /// In the order of the calls; null for a call that failed.
  std::vector<VariantPtr> replies;
  /// False when somebody left a call without an answer, which is not the same as refusing it.
  bool isComplete = false;

  /// Makes the calls and waits for their answers until this moment, or until stop is requested.
  /// Any thread.
  [[nodiscard]] static BusExchange make(const BusConnectionPtr& connection,
                                        const std::vector<BusCall>& calls, BusWait::Moment end,
                                        const std::stop_token& stop);
};

class Environment;

/// The address of the user's session bus; nothing when none runs. Asking GDBus instead would start
/// a new, empty bus and leave it behind.
[[nodiscard]] std::optional<std::string> sessionBusAddress(const Environment& environment);

} // namespace velmor
