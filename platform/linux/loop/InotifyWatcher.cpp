#include "platform/linux/loop/InotifyWatcher.h"

#include "platform/linux/glib/GlibHandles.h"

#include <glib-unix.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <set>
#include <string>
#include <unordered_map>

namespace velmor {

namespace {

/// Programs open files for writing that they only read, so closing them says nothing.
constexpr std::uint32_t changes =
    IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_MODIFY | IN_DELETE_SELF | IN_MOVE_SELF;

/// What a folder is watched for.
struct Interest {
  bool all = false;
  std::set<std::string, std::less<>> names;
};

/// What the source's function needs. It lives as long as the source does, which may be a moment
/// longer than the watch.
struct Listener {
  std::unordered_map<int, Interest> folders;
  std::function<void()> changed;

  [[nodiscard]] bool isMeant(const inotify_event& event) const {
    if ((event.mask & IN_Q_OVERFLOW) != 0) return true;
    const auto folder = folders.find(event.wd);
    if (folder == folders.end() || (event.mask & IN_IGNORED) != 0) return false;
    const auto& interest = folder->second;
    return interest.all || (event.len > 0 && interest.names.contains(&event.name[0]));
  }
};

/// Takes everything that has been reported, and tells whether anything of it is wanted.
bool take(int descriptor, const Listener& listener) {
  constexpr std::size_t room = 16384;
  alignas(inotify_event) std::array<char, room> buffer;
  bool isAny = false;
  for (;;) {
    const auto length = read(descriptor, buffer.data(), buffer.size());
    if (length <= 0) return isAny;
    for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
      const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + at);
      isAny = isAny || listener.isMeant(event);
      at += sizeof(inotify_event) + event.len;
    }
  }
}

gboolean onReadable(gint descriptor, GIOCondition, gpointer data) {
  const auto& listener = *static_cast<const Listener*>(data);
  if (take(descriptor, listener)) listener.changed();
  return G_SOURCE_CONTINUE;
}

class InotifyWatch final : public FileWatch {
public:
  InotifyWatch(int opened, std::unique_ptr<Listener> listener)
      : descriptor(opened), source(g_unix_fd_source_new(descriptor, G_IO_IN)) {
    const auto release = [](gpointer data) { delete static_cast<Listener*>(data); }; // NOLINT
    // The source takes any function; this is the one that it calls for a descriptor.
    g_source_set_callback(source.get(), G_SOURCE_FUNC(onReadable), listener.release(), release);
    g_source_attach(source.get(), nullptr);
  }
  ~InotifyWatch() override {
    g_source_destroy(source.get());
    close(descriptor);
  }
  InotifyWatch(const InotifyWatch&) = delete;
  InotifyWatch& operator=(const InotifyWatch&) = delete;

private:
  int descriptor;
  GlibPtr<GSource> source;
};

} // namespace

std::unique_ptr<FileWatch> InotifyWatcher::watch(const WatchedPlaces& places,
                                                 std::function<void()> changed) {
  const int descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (descriptor < 0) return nullptr;
  auto listener = std::make_unique<Listener>();
  listener->changed = std::move(changed);
  const auto interestIn = [&](const std::filesystem::path& folder) -> Interest* {
    const int number = inotify_add_watch(descriptor, folder.c_str(), changes | IN_ONLYDIR);
    return number < 0 ? nullptr : &listener->folders[number];
  };
  for (const auto& folder : places.folders) {
    if (auto* const interest = interestIn(folder)) interest->all = true;
  }
  for (const auto& file : places.files) {
    if (auto* const interest = interestIn(file.parent_path())) {
      interest->names.insert(file.filename());
    }
  }
  return std::make_unique<InotifyWatch>(descriptor, std::move(listener));
}

} // namespace velmor
