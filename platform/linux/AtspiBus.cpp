#include "platform/linux/AtspiBus.h"

#include "platform/linux/DBusValues.h"

#include <set>

namespace velmor {

namespace {

constexpr auto registryName = "org.a11y.atspi.Registry";
constexpr auto launcherName = "org.a11y.Bus";
constexpr auto launcherPath = "/org/a11y/bus";

std::string addressOf(const DBusConnection& session) {
  const auto answer = session.call(
      {launcherName, launcherPath, "org.a11y.Bus", "GetAddress", "(s)"}, AtspiBus::callDeadline);
  return answer.value ? textOf(memberOf(answer.value, 0)) : "";
}

/// The bus names of the programs that the registry knows, in its order.
std::vector<std::string> registeredNames(const DBusConnection& bus) {
  DBusCall call{registryName, "/org/a11y/atspi/accessible/root", "org.a11y.atspi.Accessible",
                "GetChildren", "(a(so))"};
  // Programs that come up without a registry stay unknown to it, so the sooner it runs the better.
  call.startsProgram = true;
  const auto answer = bus.call(call, AtspiBus::callDeadline);
  std::vector<std::string> names;
  std::set<std::string> known;
  const auto references = answer.value ? memberOf(answer.value, 0) : nullptr;
  for (std::size_t index = 0; index < sizeOf(references); ++index) {
    auto name = textOf(memberOf(memberOf(references, index), 0));
    if (known.insert(name).second) names.push_back(std::move(name));
  }
  return names;
}

} // namespace

std::shared_ptr<AtspiBus> AtspiBus::open(const std::stop_token& stop) {
  auto session = DBusConnection::toSessionBus(stop);
  if (!session) return nullptr;
  const auto address = addressOf(*session);
  if (address.empty()) return nullptr;
  auto accessibility = DBusConnection::toAddress(address, stop);
  if (!accessibility) return nullptr;
  auto bus = std::make_shared<AtspiBus>(std::move(session), std::move(accessibility));
  bus->askForCaches();
  return bus;
}

AtspiBus::AtspiBus(std::shared_ptr<DBusConnection> sessionBus,
                   std::shared_ptr<DBusConnection> accessibilityBus)
    : session(std::move(sessionBus)), accessibility(std::move(accessibilityBus)) {}

bool AtspiBus::isOpen() const {
  return session->isOpen() && accessibility->isOpen();
}

bool AtspiBus::isSwitchedOn() const {
  const auto answer =
      session->call({launcherName, launcherPath, "org.freedesktop.DBus.Properties", "Get", "(v)",
                     adoptValue(g_variant_new("(ss)", "org.a11y.Status", "IsEnabled"))},
                    callDeadline);
  if (!answer.value) return false;
  const auto property = memberOf(memberOf(answer.value, 0), 0);
  return g_variant_is_of_type(property.get(), G_VARIANT_TYPE_BOOLEAN) &&
         g_variant_get_boolean(property.get());
}

std::optional<std::string> AtspiBus::nameOf(std::int32_t process) const {
  const auto names = registeredNames(*accessibility);
  std::vector<DBusCall> calls;
  for (const auto& name : names) {
    calls.push_back({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                     "GetConnectionUnixProcessID", "(u)",
                     adoptValue(g_variant_new("(s)", name.c_str()))});
  }
  const auto answers = accessibility->exchange(calls, callDeadline);
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (!answers[index].value) continue;
    const auto owner = g_variant_get_uint32(memberOf(answers[index].value, 0).get());
    if (owner == static_cast<std::uint32_t>(process)) return names[index];
  }
  return std::nullopt;
}

/// GTK 3 keeps its cache, which answers for all elements at once, only while somebody has asked
/// the registry for such events.
void AtspiBus::askForCaches() const {
  DBusCall call{registryName,
                "/org/a11y/atspi/registry",
                "org.a11y.atspi.Registry",
                "RegisterEvent",
                "()",
                adoptValue(g_variant_new("(sass)", "object:children-changed", nullptr, ""))};
  call.startsProgram = true;
  (void)accessibility->call(call, callDeadline);
}

} // namespace velmor
