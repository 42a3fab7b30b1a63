#include "platform/linux/bus/SessionBus.h"

#include "platform/Environment.h"

#include <gio/gio.h>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace velmor {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

gboolean timeIsOver(gpointer over) {
  *static_cast<bool*>(over) = true;
  return G_SOURCE_CONTINUE;
}

/// Sets `over` from within the context at a moment.
class Alarm {
public:
  Alarm(GMainContext* context, steady_clock::time_point moment, bool& over) {
    const auto delay = std::chrono::ceil<milliseconds>(moment - steady_clock::now());
    source.reset(
        g_timeout_source_new(static_cast<guint>(std::max(delay, milliseconds{0}).count())));
    g_source_set_callback(source.get(), timeIsOver, &over, nullptr);
    g_source_attach(source.get(), context);
  }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;
  ~Alarm() { g_source_destroy(source.get()); }

private:
  GlibPtr<GSource> source;
};

/// Lets what has become ready in a context run. Left waiting, it would keep its connection, which
/// in turn keeps the context that it was made in.
void drain(GMainContext* context) {
  while (g_main_context_iteration(context, FALSE) != FALSE) {
  }
}

/// The handle of a connection that was made in `context`.
BusConnectionPtr handleOf(GlibPtr<GDBusConnection> connection, GMainContext* context) {
  if (!connection) return nullptr;
  const std::shared_ptr<GMainContext> home = GlibPtr<GMainContext>(g_main_context_ref(context));
  return {connection.release(), [home](GDBusConnection* made) {
            GlibPtr<GDBusConnection> released(made);
            drain(home.get());
            released.reset();
            // What was registered with the connection is released from within the context too.
            drain(home.get());
          }};
}

} // namespace

BusCall callOfBus(std::string method, VariantPtr arguments, std::string replyType) {
  constexpr auto name = "org.freedesktop.DBus";
  return {.destination = name,
          .path = "/org/freedesktop/DBus",
          .interface = name,
          .method = std::move(method),
          .arguments = std::move(arguments),
          .replyType = std::move(replyType)};
}

BusCall propertyCall(std::string destination, std::string path, const std::string& interface,
                     const std::string& property) {
  return {.destination = std::move(destination),
          .path = std::move(path),
          .interface = busPropertiesInterface,
          .method = "Get",
          .arguments = tupleOf(interface, property),
          .replyType = "(v)"};
}

VariantPtr propertyIn(const VariantPtr& reply) {
  return memberOf(memberOf(reply, 0), 0);
}

/// An answer that is still to come. It outlives the call and goes with the answer.
struct BusWait::Pending {
  BusWait& wait;
  ReplyHandler onReply;
  BusConnectionPtr* connection = nullptr;

  static void connected(GObject*, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
    --pending->wait.outstanding;
    GlibPtr<GDBusConnection> made(g_dbus_connection_new_for_address_finish(result, nullptr));
    auto handle = handleOf(std::move(made), pending->wait.context.get());
    if (pending->wait.isServing) *pending->connection = std::move(handle);
  }

  static void replied(GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
    --pending->wait.outstanding;
    VariantPtr reply(
        g_dbus_connection_call_finish(reinterpret_cast<GDBusConnection*>(source), result, nullptr));
    if (pending->wait.isServing) pending->onReply(std::move(reply));
  }
};

BusWait::BusWait(Moment end, std::stop_token stopToken)
    : lastMoment(end)
    , stop(std::move(stopToken))
    , context(g_main_context_new())
    , cancellable(g_cancellable_new()) {
  g_main_context_push_thread_default(context.get());
}

BusWait::~BusWait() {
  isServing = false;
  g_cancellable_cancel(cancellable.get());
  while (outstanding > 0)
    g_main_context_iteration(context.get(), TRUE);
  drain(context.get());
  g_main_context_pop_thread_default(context.get());
}

BusConnectionPtr BusWait::connect(const std::string& address) {
  BusConnectionPtr connection;
  const auto before = outstanding++;
  const auto flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  auto pending = std::make_unique<Pending>(Pending{*this, nullptr, &connection});
  g_dbus_connection_new_for_address(address.c_str(), flags, nullptr, cancellable.get(),
                                    Pending::connected, pending.release());
  if (!wait([&] { return outstanding == before; })) {
    // The place for the answer goes with this call.
    isServing = false;
  }
  return connection;
}

void BusWait::call(const BusConnectionPtr& connection, const BusCall& call, ReplyHandler handler) {
  ++outstanding;
  auto pending = std::make_unique<Pending>(Pending{*this, std::move(handler)});
  const auto flags = call.startsService ? G_DBUS_CALL_FLAGS_NONE : G_DBUS_CALL_FLAGS_NO_AUTO_START;
  g_dbus_connection_call(connection.get(), call.destination.c_str(), call.path.c_str(),
                         call.interface.c_str(), call.method.c_str(), call.arguments.get(),
                         G_VARIANT_TYPE(call.replyType.c_str()), flags, G_MAXINT, cancellable.get(),
                         Pending::replied, pending.release());
}

bool BusWait::waitUntil(Moment moment, const std::function<bool()>& isEnough) {
  bool over = false;
  const Alarm alarm(context.get(), std::min(moment, lastMoment), over);
  const std::stop_callback wake(stop, [this] { g_main_context_wakeup(context.get()); });
  while (!isEnough()) {
    if (over || stop.stop_requested()) return false;
    g_main_context_iteration(context.get(), TRUE);
  }
  return true;
}

BusExchange BusExchange::make(const BusConnectionPtr& connection, const std::vector<BusCall>& calls,
                              BusWait::Moment end, const std::stop_token& stop) {
  BusExchange exchange;
  exchange.replies.resize(calls.size());
  auto missing = calls.size();
  BusWait wait(end, stop);
  for (std::size_t index = 0; index < calls.size(); ++index) {
    wait.call(connection, calls[index], [&exchange, &missing, index](VariantPtr reply) {
      exchange.replies[index] = std::move(reply);
      --missing;
    });
  }
  exchange.isComplete = wait.wait([&] { return missing == 0; });
  return exchange;
}

std::optional<std::string> sessionBusAddress(const Environment& environment) {
  const auto address = environment.variable("DBUS_SESSION_BUS_ADDRESS").value_or("");
  if (!address.empty()) {
    const bool isAddress = g_dbus_is_supported_address(address.c_str(), nullptr) != FALSE;
    if (!isAddress || address.find("autolaunch:") != std::string::npos) return std::nullopt;
    return address;
  }
  const auto runtimeFolder = environment.variable("XDG_RUNTIME_DIR").value_or("");
  if (runtimeFolder.empty()) return std::nullopt;
  const auto socket = std::filesystem::path(runtimeFolder) / "bus";
  std::error_code ignored;
  if (!std::filesystem::is_socket(socket, ignored)) return std::nullopt;
  return "unix:path=" + takeText(g_dbus_address_escape_value(socket.c_str()));
}

} // namespace velmor
