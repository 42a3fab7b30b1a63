#pragma once

#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/glib/Variants.h"

#include <gio/gio.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

namespace velmor {

/// A media player on a bus. It answers on GDBus's own thread, so it needs no main loop.
class FakePlayer {
public:
  /// `properties` is a dictionary in GVariant's text form. The player says that it does not have
  /// the interface that would identify it, and without properties that it has none.
  FakePlayer(const std::string& address, const std::string& name, std::string properties)
      : player(std::move(properties)) {
    const auto flags =
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    auto* made =
        g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, nullptr);
    if (!made) throw std::runtime_error("no bus for the player");
    connection = GlibPtr<GDBusConnection>(made);
    filter = g_dbus_connection_add_filter(made, take, this, nullptr);
    const auto busName = "org.mpris.MediaPlayer2." + name;
    const VariantPtr owned(g_dbus_connection_call_sync(
        made, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", busName.c_str(), 0U), nullptr, G_DBUS_CALL_FLAGS_NONE,
        -1, nullptr, nullptr));
    if (!owned) throw std::runtime_error("no name for the player");
  }
  FakePlayer(const FakePlayer&) = delete;
  FakePlayer& operator=(const FakePlayer&) = delete;
  ~FakePlayer() {
    // Once this returns, GDBus's thread calls the filter no more.
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
    g_dbus_connection_remove_filter(connection.get(), filter);
  }

  /// While it hangs it answers nothing.
  void hang(bool hangs) { hanging = hangs; }

  /// Announces a new playback status.
  void announce(const char* status) {
    const auto signal = "('org.mpris.MediaPlayer2.Player', {'PlaybackStatus': <'" +
                        std::string(status) + "'>}, @as [])";
    g_dbus_connection_emit_signal(connection.get(), nullptr, "/org/mpris/MediaPlayer2",
                                  "org.freedesktop.DBus.Properties", "PropertiesChanged",
                                  g_variant_new_parsed(signal.c_str()), nullptr);
    g_dbus_connection_flush_sync(connection.get(), nullptr, nullptr);
  }

  /// It answers everything this late.
  void answerAfter(std::chrono::milliseconds time) { delay = time; }

  /// How many questions came that it did not answer.
  [[nodiscard]] int ignored() const { return unanswered; }

private:
  static GDBusMessage* take(GDBusConnection*, GDBusMessage* message, gboolean incoming,
                            gpointer data) {
    const bool isQuestion =
        incoming != FALSE &&
        g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL &&
        g_strcmp0(g_dbus_message_get_member(message), "GetAll") == 0;
    if (!isQuestion) return message;
    static_cast<FakePlayer*>(data)->answer(GlibPtr<GDBusMessage>(message).get());
    return nullptr;
  }

  void answer(GDBusMessage* question) {
    if (hanging) {
      ++unanswered;
      return;
    }
    std::this_thread::sleep_for(delay.load());
    const std::string interface = g_dbus_message_get_arg0(question);
    GlibPtr<GDBusMessage> reply;
    if (player.empty() || interface == "org.mpris.MediaPlayer2") {
      reply.reset(g_dbus_message_new_method_error_literal(
          question, "org.freedesktop.DBus.Error.UnknownInterface", "none"));
    } else {
      reply.reset(g_dbus_message_new_method_reply(question));
      g_dbus_message_set_body(reply.get(), g_variant_new_parsed(("(" + player + ",)").c_str()));
    }
    g_dbus_connection_send_message(connection.get(), reply.get(), G_DBUS_SEND_MESSAGE_FLAGS_NONE,
                                   nullptr, nullptr);
  }

  std::string player;
  std::atomic<bool> hanging = false;
  std::atomic<int> unanswered = 0;
  std::atomic<std::chrono::milliseconds> delay{};
  unsigned filter = 0;
  BusConnectionPtr connection;
};

} // namespace velmor
