#include "platform/linux/DBusConnection.h"

#include "platform/linux/DBusValues.h"

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <utility>

namespace velmor {

namespace {

template <typename Object>
std::shared_ptr<Object> adoptObject(Object* object) {
  return {object, [](Object* owned) {
            if (owned) g_object_unref(owned);
          }};
}

/// Ends what waits when the program quits.
class Cancellation {
public:
  explicit Cancellation(const std::stop_token& stop)
      : cancellable(adoptObject(g_cancellable_new()))
      , callback(stop, [target = cancellable.get()] { g_cancellable_cancel(target); }) {}

  [[nodiscard]] GCancellable* get() const { return cancellable.get(); }

private:
  std::shared_ptr<GCancellable> cancellable;
  std::stop_callback<std::function<void()>> callback;
};

/// A main context that takes this thread's answers while it lives.
class OwnContext {
public:
  OwnContext() : context(g_main_context_new()) { g_main_context_push_thread_default(context); }
  OwnContext(const OwnContext&) = delete;
  OwnContext& operator=(const OwnContext&) = delete;
  ~OwnContext() {
    g_main_context_pop_thread_default(context);
    g_main_context_unref(context);
  }

  void iterate() const { g_main_context_iteration(context, TRUE); }

private:
  GMainContext* context;
};

/// Where one call's answer goes.
struct PendingAnswer {
  DBusAnswer& answer;
  std::size_t& missing;
};

void onAnswer(GObject* connection, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<PendingAnswer> pending(static_cast<PendingAnswer*>(data));
  GError* error = nullptr;
  pending->answer.value =
      adoptValue(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
  if (error) {
    pending->answer.timedOut = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT);
    g_error_free(error);
  }
  --pending->missing;
}

/// GLib would start a bus of its own when it finds none: look first, as it would.
std::string sessionBusAddress() {
  const auto* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address && *address) return address;
  const auto* folder = std::getenv("XDG_RUNTIME_DIR");
  if (!folder || !*folder) return "";
  const auto socket = std::filesystem::path(folder) / "bus";
  std::error_code error;
  return std::filesystem::is_socket(socket, error) ? "unix:path=" + socket.string() : "";
}

const char* orNull(const std::string& text) {
  return text.empty() ? nullptr : text.c_str();
}

} // namespace

std::shared_ptr<DBusConnection> DBusConnection::toSessionBus(std::stop_token stop) {
  const auto address = sessionBusAddress();
  return address.empty() ? nullptr : toAddress(address, std::move(stop));
}

std::shared_ptr<DBusConnection> DBusConnection::toAddress(const std::string& address,
                                                          std::stop_token stop) {
  const Cancellation cancellation(stop);
  constexpr auto flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  const auto opened = adoptObject(g_dbus_connection_new_for_address_sync(
      address.c_str(), flags, nullptr, cancellation.get(), nullptr));
  return opened ? std::make_shared<DBusConnection>(opened, std::move(stop)) : nullptr;
}

DBusConnection::DBusConnection(std::shared_ptr<_GDBusConnection> opened, std::stop_token stop)
    : connection(std::move(opened)), stopToken(std::move(stop)) {}

bool DBusConnection::isOpen() const {
  return !g_dbus_connection_is_closed(connection.get());
}

std::vector<DBusAnswer> DBusConnection::exchange(const std::vector<DBusCall>& calls,
                                                 std::chrono::milliseconds deadline) const {
  const Cancellation cancellation(stopToken);
  const OwnContext context;
  std::vector<DBusAnswer> answers(calls.size());
  std::size_t missing = calls.size();
  for (std::size_t index = 0; index < calls.size(); ++index) {
    const auto& call = calls[index];
    auto pending = std::make_unique<PendingAnswer>(PendingAnswer{answers[index], missing});
    g_dbus_connection_call(
        connection.get(), orNull(call.destination), call.path.c_str(), call.interface.c_str(),
        call.method.c_str(), call.arguments.get(), G_VARIANT_TYPE(call.answerType.c_str()),
        call.startsProgram ? G_DBUS_CALL_FLAGS_NONE : G_DBUS_CALL_FLAGS_NO_AUTO_START,
        static_cast<int>(deadline.count()), cancellation.get(), onAnswer, pending.release());
  }
  while (missing > 0)
    context.iterate();
  return answers;
}

DBusAnswer DBusConnection::call(const DBusCall& call, std::chrono::milliseconds deadline) const {
  return exchange({call}, deadline).front();
}

} // namespace velmor
