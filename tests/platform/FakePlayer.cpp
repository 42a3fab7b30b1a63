#include "tests/platform/FakePlayer.h"

#include <gio/gio.h>

#include <stdexcept>

namespace velmor {

struct FakePlayer::Bus {
  static GDBusMessage* answer(GDBusConnection* connection, GDBusMessage* message, gboolean incoming,
                              gpointer data) {
    auto& self = *static_cast<FakePlayer*>(data);
    const bool isQuestion =
        incoming != FALSE &&
        g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL &&
        g_strcmp0(g_dbus_message_get_member(message), "GetAll") == 0;
    if (!isQuestion) return message;
    if (self.hanging) {
      ++self.unanswered;
    } else {
      const std::string interface = g_dbus_message_get_arg0(message);
      reply(connection, message, interface == "org.mpris.MediaPlayer2" ? "" : self.player);
    }
    g_object_unref(message);
    return nullptr;
  }

  static void reply(GDBusConnection* connection, GDBusMessage* question,
                    const std::string& properties) {
    GDBusMessage* answer = nullptr;
    if (properties.empty()) {
      answer = g_dbus_message_new_method_error_literal(
          question, "org.freedesktop.DBus.Error.UnknownInterface", "none");
    } else {
      answer = g_dbus_message_new_method_reply(question);
      GVariant* dictionary =
          g_variant_parse(G_VARIANT_TYPE_VARDICT, properties.c_str(), nullptr, nullptr, nullptr);
      g_dbus_message_set_body(answer, g_variant_new_tuple(&dictionary, 1));
      g_variant_unref(dictionary);
    }
    g_dbus_connection_send_message(connection, answer, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                   nullptr);
    g_object_unref(answer);
  }
};

FakePlayer::FakePlayer(const std::string& address, const std::string& name, std::string properties)
    : player(std::move(properties)) {
  const auto flags =
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  auto* made =
      g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, nullptr);
  if (!made) throw std::runtime_error("no bus for the player");
  connection = {made, [](GDBusConnection* released) { g_object_unref(released); }};
  filter = g_dbus_connection_add_filter(made, Bus::answer, this, nullptr);
  const auto busName = "org.mpris.MediaPlayer2." + name;
  const VariantPtr owned(g_dbus_connection_call_sync(
      made, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
      g_variant_new("(su)", busName.c_str(), 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
      nullptr));
  if (!owned) throw std::runtime_error("no name for the player");
}

FakePlayer::~FakePlayer() {
  // Once this returns, GDBus's thread calls the filter no more.
  g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
  g_dbus_connection_remove_filter(connection.get(), filter);
}

void FakePlayer::announce(const char* status) {
  GVariantBuilder changed;
  g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
  g_variant_builder_add(&changed, "{sv}", "PlaybackStatus", g_variant_new_string(status));
  g_dbus_connection_emit_signal(
      connection.get(), nullptr, "/org/mpris/MediaPlayer2", "org.freedesktop.DBus.Properties",
      "PropertiesChanged",
      g_variant_new("(sa{sv}as)", "org.mpris.MediaPlayer2.Player", &changed, nullptr), nullptr);
  g_dbus_connection_flush_sync(connection.get(), nullptr, nullptr);
}

} // namespace velmor
