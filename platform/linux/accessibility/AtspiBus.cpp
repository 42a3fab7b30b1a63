#include "platform/linux/accessibility/AtspiBus.h"

#include "platform/linux/glib/Variants.h"

#include <gio/gio.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <set>

namespace velmor {

namespace {

constexpr auto registryName = "org.a11y.atspi.Registry";
constexpr auto launcherName = "org.a11y.Bus";
constexpr auto launcherPath = "/org/a11y/bus";

BusWait::Moment soon() {
  return std::chrono::steady_clock::now() + AtspiBus::patience;
}

BusConnectionPtr connect(const std::string& address, const std::stop_token& quit) {
  return BusWait(soon(), quit).connect(address);
}

/// Makes one call; null when it fails.
VariantPtr ask(const BusConnectionPtr& connection, BusCall call, const std::stop_token& quit) {
  std::vector<BusCall> calls;
  calls.push_back(std::move(call));
  return std::move(BusExchange::make(connection, calls, soon(), quit).replies.front());
}

} // namespace

std::shared_ptr<AtspiBus> AtspiBus::open(const std::string& sessionAddress,
                                         const std::stop_token& quit) {
  auto session = connect(sessionAddress, quit);
  if (!session) return nullptr;
  const auto reply =
      ask(session, {launcherName, launcherPath, launcherName, "GetAddress", nullptr, "(s)"}, quit);
  const auto address = textOf(memberOf(reply, 0));
  const bool isAddress = g_dbus_is_supported_address(address.c_str(), nullptr) != FALSE;
  auto accessibility = isAddress ? connect(address, quit) : nullptr;
  if (!accessibility) return nullptr;
  auto bus = std::make_shared<AtspiBus>(std::move(session), std::move(accessibility), quit);
  bus->askForCaches();
  return bus;
}

AtspiBus::AtspiBus(BusConnectionPtr sessionBus, BusConnectionPtr accessibilityBus,
                   std::stop_token quitToken)
    : session(std::move(sessionBus))
    , accessibility(std::move(accessibilityBus))
    , quit(std::move(quitToken)) {}

bool AtspiBus::isOpen() const {
  return g_dbus_connection_is_closed(session.get()) == FALSE &&
         g_dbus_connection_is_closed(accessibility.get()) == FALSE;
}

bool AtspiBus::isSwitchedOn() const {
  const auto reply =
      ask(session, propertyCall(launcherName, launcherPath, "org.a11y.Status", "IsEnabled"), quit);
  return valueOf<bool>(propertyIn(reply)).value_or(false);
}

std::optional<std::string> AtspiBus::nameOf(std::int32_t process) const {
  const auto names = registeredNames();
  std::vector<BusCall> calls;
  calls.reserve(names.size());
  for (const auto& name : names) {
    calls.push_back(callOfBus("GetConnectionUnixProcessID", tupleOf(name), "(u)"));
  }
  const auto replies = exchange(calls, soon()).replies;
  for (std::size_t index = 0; index < names.size(); ++index) {
    const auto owner = valueOf<std::uint32_t>(memberOf(replies[index], 0));
    if (owner == static_cast<std::uint32_t>(process)) return names[index];
  }
  return std::nullopt;
}

BusExchange AtspiBus::exchange(const std::vector<BusCall>& calls, BusWait::Moment end) const {
  return BusExchange::make(accessibility, calls, end, quit);
}

/// The bus names of the programs that the registry knows, in its order.
std::vector<std::string> AtspiBus::registeredNames() const {
  // Programs that come up without a registry stay unknown to it, so the sooner it runs the better.
  const auto reply = ask(accessibility,
                         {registryName, "/org/a11y/atspi/accessible/root",
                          "org.a11y.atspi.Accessible", "GetChildren", nullptr, "(a(so))", true},
                         quit);
  std::vector<std::string> names;
  std::set<std::string> known;
  for (const auto& reference : membersOf(memberOf(reply, 0))) {
    auto name = textOf(memberOf(reference, 0));
    if (known.insert(name).second) names.push_back(std::move(name));
  }
  return names;
}

/// GTK 3 keeps its cache, which answers for all elements at once, only while somebody has asked
/// the registry for such events.
void AtspiBus::askForCaches() const {
  auto arguments = tupleOf("object:children-changed", std::vector<std::string>(), "");
  (void)ask(accessibility,
            {registryName, "/org/a11y/atspi/registry", registryName, "RegisterEvent",
             std::move(arguments), "()", true},
            quit);
}

namespace {

/// More at once would let a slow program look like a hung one.
constexpr std::size_t callsAtOnce = 512;

} // namespace

AtspiConversation::AtspiConversation(std::shared_ptr<AtspiBus> accessibilityBus,
                                     std::string programName)
    : bus(std::move(accessibilityBus))
    , name(std::move(programName))
    , end(std::chrono::steady_clock::now() + budget) {}

bool AtspiConversation::isOver() const {
  return hung || std::chrono::steady_clock::now() >= end;
}

std::vector<VariantPtr> AtspiConversation::exchange(std::vector<BusCall> calls) {
  std::vector<VariantPtr> replies;
  replies.reserve(calls.size());
  while (replies.size() < calls.size() && !isOver()) {
    const auto first = calls.begin() + static_cast<std::ptrdiff_t>(replies.size());
    const auto count = std::min(callsAtOnce, calls.size() - replies.size());
    const std::vector<BusCall> batch(
        std::make_move_iterator(first),
        std::make_move_iterator(first + static_cast<std::ptrdiff_t>(count)));
    const auto patienceEnds = std::chrono::steady_clock::now() + AtspiBus::patience;
    auto result = bus->exchange(batch, std::min(end, patienceEnds));
    hung = !result.isComplete;
    std::ranges::move(result.replies, std::back_inserter(replies));
  }
  replies.resize(calls.size());
  return replies;
}

VariantPtr AtspiConversation::ask(BusCall call) {
  std::vector<BusCall> calls;
  calls.push_back(std::move(call));
  return std::move(exchange(std::move(calls)).front());
}

} // namespace velmor
