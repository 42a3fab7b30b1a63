#pragma once

#include <memory>
#include <string>
#include <vector>

struct _GError;
struct _GKeyFile;
struct _GMainContext;
struct _GSource;
struct _GVariant;

namespace velmor {

/// The deleter of `GlibPtr`. A thing is an object (GObject) and has one reference dropped, unless a
/// specialisation says otherwise. For a type of another library that is no object, such as
/// WebKitUserScript, add one next to its use:
///
///     template <>
///     struct GlibRelease<WebKitUserScript> {
///       void operator()(WebKitUserScript* script) const { webkit_user_script_unref(script); }
///     };
template <typename Thing>
struct GlibRelease {
  void operator()(Thing* object) const { GlibRelease<void>()(object); }
};

template <>
struct GlibRelease<void> {
  void operator()(void* object) const;
};
template <>
struct GlibRelease<char> {
  void operator()(char* text) const;
};
template <>
struct GlibRelease<char*> {
  void operator()(char** texts) const;
};
template <>
struct GlibRelease<_GError> {
  void operator()(_GError* error) const;
};
template <>
struct GlibRelease<_GKeyFile> {
  void operator()(_GKeyFile* file) const;
};
template <>
struct GlibRelease<_GMainContext> {
  void operator()(_GMainContext* context) const;
};
/// Drops the reference only: a source that was attached stays so until it is destroyed.
template <>
struct GlibRelease<_GSource> {
  void operator()(_GSource* source) const;
};
template <>
struct GlibRelease<_GVariant> {
  void operator()(_GVariant* value) const;
};

/// Owns what a function of GLib, or of a library built on it, gives to its caller ("transfer
/// full"): an object, a text (`char`), a list of texts (`char*`), an error, a variant and so on.
///
///     const GlibPtr<GFile> file(g_file_new_for_path(path));
///     GError* failure = nullptr;
///     work(&failure);
///     const GlibPtr<GError> error(failure);
///
/// A header that does not want to include GLib names the struct: `GlibPtr<_GFile>` is the same
/// type. To share one reference, make it a std::shared_ptr.
template <typename Thing>
using GlibPtr = std::unique_ptr<Thing, GlibRelease<Thing>>;

/// Adds a reference to an object, or takes the floating one that a new widget starts with. Use
/// `owned` instead.
void* takeReference(void* object);

/// A handle of our own for an object that is somebody else's, or for a new widget.
template <typename Object>
[[nodiscard]] GlibPtr<Object> owned(Object* object) {
  return GlibPtr<Object>(static_cast<Object*>(takeReference(object)));
}

/// Takes over a text that GLib made and gives it as a string; "" for null.
[[nodiscard]] std::string takeText(char* made);

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
