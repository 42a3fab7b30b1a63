#include "platform/linux/media/MprisBus.h"

#include "platform/linux/glib/Variants.h"
#include "platform/linux/media/MprisPlayer.h"

#include <gio/gio.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace velmor {

namespace {

using std::chrono::steady_clock;

constexpr auto playerPath = "/org/mpris/MediaPlayer2";
constexpr auto playerInterface = "org.mpris.MediaPlayer2.Player";

/// How long a player that has hung before is waited for, which is short enough to pay at every
/// reading. One that answers later than this, but in time, is waited for again from then on.
constexpr std::chrono::milliseconds patienceWithHung{100};

/// Who wants to know what players send.
struct Listeners {
  std::shared_ptr<PlaybackHistory> history;
  std::shared_ptr<LateAnswers> late;
};

/// Notes answers and PropertiesChanged signals of players, on the thread on which GDBus reads
/// messages. Answers pass here even when nobody waits for them any more.
GDBusMessage* noteMessage(GDBusConnection*, GDBusMessage* message, gboolean, gpointer data) {
  const auto& listeners = *static_cast<Listeners*>(data);
  const auto type = g_dbus_message_get_message_type(message);
  const char* sender = g_dbus_message_get_sender(message);
  if (!sender) return message;
  if (type == G_DBUS_MESSAGE_TYPE_METHOD_RETURN || type == G_DBUS_MESSAGE_TYPE_ERROR) {
    listeners.late->answered(sender, steady_clock::now());
  }
  const bool isChange = type == G_DBUS_MESSAGE_TYPE_SIGNAL &&
                        g_strcmp0(g_dbus_message_get_path(message), playerPath) == 0 &&
                        g_strcmp0(g_dbus_message_get_member(message), "PropertiesChanged") == 0;
  auto* const body = isChange ? g_dbus_message_get_body(message) : nullptr;
  if (!body) return message;
  // Interface, what has changed, and the names of what has to be read anew.
  if (const auto playing = isPlaying(memberOf(VariantPtr(g_variant_ref(body)), 1))) {
    listeners.history->statusChanged(sender, *playing);
  }
  return message;
}

void releaseListeners(gpointer data) {
  const std::unique_ptr<Listeners> released(static_cast<Listeners*>(data));
}

/// The players among the names on the bus; nothing when it has not told them.
std::optional<std::vector<std::string>> playerNames(const VariantPtr& reply) {
  auto names = valueOf<std::vector<std::string>>(memberOf(reply, 0));
  if (names) std::erase_if(*names, [](const auto& name) { return !isPlayerName(name); });
  return names;
}

} // namespace

/// What has come in about one player.
struct MprisBus::Reading {
  std::string busName;
  bool hasHung = false;
  int outstanding = 0;
  std::string owner;
  std::uint32_t process = 0;
  VariantPtr player;
  VariantPtr identity;

  void ask(BusWait& wait, const BusConnectionPtr& bus) {
    request(wait, bus, callOfBus("GetNameOwner", tupleOf(busName), "(s)"),
            [this](const VariantPtr& answer) { owner = textOf(answer); });
    request(
        wait, bus, callOfBus("GetConnectionUnixProcessID", tupleOf(busName), "(u)"),
        [this](const VariantPtr& answer) { process = valueOf<std::uint32_t>(answer).value_or(0); });
    requestProperties(wait, bus, playerInterface, player);
    requestProperties(wait, bus, "org.mpris.MediaPlayer2", identity);
  }

private:
  void requestProperties(BusWait& wait, const BusConnectionPtr& bus, const char* interface,
                         VariantPtr& properties) {
    request(wait, bus,
            {busName, playerPath, busPropertiesInterface, "GetAll", tupleOf(interface), "(a{sv})"},
            [&properties](VariantPtr answer) { properties = std::move(answer); });
  }

  /// `onSuccess` gets the one value of the answer.
  void request(BusWait& wait, const BusConnectionPtr& bus, const BusCall& call,
               std::function<void(VariantPtr answer)> onSuccess) {
    ++outstanding;
    wait.call(bus, call, [this, handle = std::move(onSuccess)](const VariantPtr& reply) {
      --outstanding;
      if (reply) handle(memberOf(reply, 0));
    });
  }
};

MprisBus::MprisBus(std::string busAddress, std::stop_token quitToken)
    : location(std::move(busAddress)), quit(std::move(quitToken)) {}

std::optional<std::vector<MprisPlayer>> MprisBus::players(Seconds timeout) {
  const auto start = steady_clock::now();
  std::optional<std::vector<std::string>> names;
  std::vector<Reading> readings;
  // Made after what its answers are written to, so that it is gone before.
  BusWait wait(start + std::chrono::duration_cast<steady_clock::duration>(timeout), quit);
  const auto bus = connected(wait);
  if (!bus) return std::nullopt;
  bool answered = false;
  wait.call(bus, callOfBus("ListNames", nullptr, "(as)"), [&](const VariantPtr& reply) {
    answered = true;
    names = playerNames(reply);
  });
  if (!wait.wait([&] { return answered; }) || !names) return std::nullopt;

  readings = plannedReadings(*names);
  for (auto& reading : readings)
    reading.ask(wait, bus);
  const auto hasAnswered = [](const Reading& reading) { return reading.outstanding == 0; };
  wait.wait([&] {
    return std::ranges::all_of(readings,
                               [&](const auto& each) { return each.hasHung || hasAnswered(each); });
  });
  wait.waitUntil(start + patienceWithHung,
                 [&] { return std::ranges::all_of(readings, hasAnswered); });
  return finish(readings, start, timeout);
}

BusConnectionPtr MprisBus::connected(BusWait& wait) {
  const std::lock_guard guard(lock);
  if (connection && g_dbus_connection_is_closed(connection.get()) == FALSE) return connection;
  connection = wait.connect(location);
  if (connection) followPlayback(connection, wait);
  return connection;
}

void MprisBus::followPlayback(const BusConnectionPtr& made, BusWait& wait) {
  auto listeners = std::make_unique<Listeners>(Listeners{history, late});
  g_dbus_connection_add_filter(made.get(), noteMessage, listeners.release(), releaseListeners);
  wait.call(made,
            callOfBus("AddMatch",
                      tupleOf("type='signal',interface='org.freedesktop.DBus.Properties',"
                              "member='PropertiesChanged',path='/org/mpris/MediaPlayer2',"
                              "arg0='org.mpris.MediaPlayer2.Player'"),
                      "()"),
            [](const VariantPtr&) {});
}

std::vector<MprisBus::Reading>
MprisBus::plannedReadings(const std::vector<std::string>& names) const {
  const std::lock_guard guard(lock);
  std::vector<Reading> readings(names.size());
  for (std::size_t index = 0; index < names.size(); ++index) {
    readings[index].busName = names[index];
    const auto found = hung.find(names[index]);
    readings[index].hasHung = found != hung.end() && !late->isWorthWaitingFor(found->second);
  }
  return readings;
}

std::vector<MprisPlayer> MprisBus::finish(const std::vector<Reading>& readings,
                                          steady_clock::time_point asked, Seconds timeout) {
  std::map<std::string, bool> playing;
  std::map<std::string, std::string> silent;
  for (const auto& reading : readings) {
    if (reading.outstanding > 0) {
      silent.emplace(reading.busName, reading.owner);
      late->missed(reading.owner, asked + timeout);
    }
    if (reading.player && !reading.owner.empty())
      playing[reading.owner] = isPlaying(reading.player).value_or(false);
  }
  history->update(playing);
  std::vector<MprisPlayer> players;
  for (const auto& reading : readings) {
    if (!reading.player) continue;
    players.push_back(playerFromProperties(reading.busName, reading.player, reading.identity));
    players.back().process = static_cast<std::int32_t>(reading.process);
    players.back().beganPlaying = history->beganPlaying(reading.owner);
  }
  const std::lock_guard guard(lock);
  hung = std::move(silent);
  return players;
}

MprisBusSource::MprisBusSource(const Environment& theEnvironment, std::stop_token quitToken)
    : environment(theEnvironment), quit(std::move(quitToken)) {}

std::shared_ptr<MprisBus> MprisBusSource::current() {
  const auto address = sessionBusAddress(environment);
  if (!address) return nullptr;
  const std::lock_guard guard(lock);
  if (!bus || bus->address() != *address) bus = std::make_shared<MprisBus>(*address, quit);
  return bus;
}

bool MprisBusSource::isNewFailure(const std::string& player, bool answered) {
  const std::lock_guard guard(lock);
  if (answered) failed.erase(player);
  return !answered && failed.insert(player).second;
}

void PlaybackHistory::statusChanged(const std::string& player, bool playing) {
  const std::lock_guard guard(lock);
  note(entries[player], playing);
}

void PlaybackHistory::update(const std::map<std::string, bool>& playing) {
  const std::lock_guard guard(lock);
  std::erase_if(entries, [&](const auto& entry) { return !playing.contains(entry.first); });
  for (const auto& [player, plays] : playing) {
    const auto [entry, isNew] = entries.try_emplace(player, Entry{.plays = plays});
    if (!isNew) note(entry->second, plays);
  }
}

std::uint64_t PlaybackHistory::beganPlaying(const std::string& player) const {
  const std::lock_guard guard(lock);
  const auto entry = entries.find(player);
  return entry == entries.end() ? 0 : entry->second.began;
}

void LateAnswers::missed(const std::string& player,
                         std::chrono::time_point<Moment::clock, Seconds> deadline) {
  const std::lock_guard guard(lock);
  awaited.try_emplace(player, deadline);
  quick.erase(player);
}

void LateAnswers::answered(const std::string& player, Moment now) {
  const std::lock_guard guard(lock);
  const auto question = awaited.find(player);
  if (question == awaited.end()) return;
  if (now <= question->second) quick.insert(player);
  awaited.erase(question);
}

bool LateAnswers::isWorthWaitingFor(const std::string& player) const {
  const std::lock_guard guard(lock);
  return quick.contains(player);
}

void PlaybackHistory::note(Entry& entry, bool playing) {
  // Many players repeat at every track that they play: only the change counts.
  if (playing && !entry.plays) entry.began = ++beginnings;
  entry.plays = playing;
}

} // namespace velmor
