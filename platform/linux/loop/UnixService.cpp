#include "platform/linux/loop/UnixService.h"

#include "platform/linux/loop/LineBuffer.h"

#include <fcntl.h>
#include <glib-unix.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <array>
#include <cerrno>
#include <optional>
#include <string_view>
#include <utility>

namespace velmor {

namespace {

/// What may wait for a program that is slow to read: more than the longest answer of a model.
constexpr int sendBuffer = 1 << 20;

std::filesystem::path socketPath(const Environment& environment) {
  const auto folder = environment.variable("XDG_RUNTIME_DIR");
  if (!folder || !folder->starts_with('/')) return {};
  return std::filesystem::path(*folder) / "velmor.sock";
}

/// Nothing for a path that is too long, as for none.
std::optional<sockaddr_un> addressOf(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto& text = path.native();
  if (text.empty() || text.size() >= sizeof address.sun_path) return std::nullopt;
  text.copy(address.sun_path, text.size());
  return address;
}

const sockaddr* asSocketAddress(const sockaddr_un& address) {
  // The system's own way of handing over addresses of any kind.
  return reinterpret_cast<const sockaddr*>(&address); // NOLINT
}

FileDescriptor newSocket() {
  return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

FileDescriptor connected(const sockaddr_un& address) {
  auto descriptor = newSocket();
  if (descriptor && ::connect(descriptor.get(), asSocketAddress(address), sizeof address) != 0)
    descriptor.close();
  return descriptor;
}

/// Is somebody of another user behind the socket? Then nothing is told.
bool isOwnUser(const FileDescriptor& descriptor) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return ::getsockopt(descriptor.get(), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         peer.uid == ::geteuid();
}

class UnixConnection final : public LocalConnection,
                             public std::enable_shared_from_this<UnixConnection> {
public:
  UnixConnection(MainLoop& mainLoop, FileDescriptor opened)
      : loop(mainLoop), descriptor(std::move(opened)) {
    ::setsockopt(descriptor.get(), SOL_SOCKET, SO_SNDBUF, &sendBuffer, sizeof sendBuffer);
  }
  UnixConnection(const UnixConnection&) = delete;
  UnixConnection& operator=(const UnixConnection&) = delete;
  ~UnixConnection() override {
    if (source != 0) g_source_remove(source);
  }

  void read(std::function<void(const std::string&)> onLine, std::function<void()> onEnd) override {
    lineHandler = std::move(onLine);
    endHandler = std::move(onEnd);
    const auto isReadable = [](int, GIOCondition, gpointer data) -> gboolean {
      auto& self = *static_cast<UnixConnection*>(data);
      if (self.takeChunk()) return G_SOURCE_CONTINUE;
      self.source = 0;
      self.tellEnd();
      return G_SOURCE_REMOVE;
    };
    const auto news = static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR);
    source = g_unix_fd_add(descriptor.get(), news, isReadable, this);
  }

  void send(const std::string& line) override {
    const auto bytes = line + '\n';
    const auto count = ::send(descriptor.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    // Half a line is worse than none: the other side sees the end, and may come again.
    if (count != static_cast<ssize_t>(bytes.size())) ::shutdown(descriptor.get(), SHUT_RDWR);
  }

private:
  /// Reads what is there; false when the other side has gone, or tells too much.
  bool takeChunk() {
    std::array<char, 65536> chunk{};
    const auto count = ::recv(descriptor.get(), chunk.data(), chunk.size(), 0);
    if (count < 0) return errno == EINTR || errno == EAGAIN;
    if (count == 0) return false;
    lines.take({chunk.data(), static_cast<std::size_t>(count)},
               [this](std::string line) { tellLine(std::move(line)); });
    return lines.unfinished().size() <= longestLine;
  }

  void tellLine(std::string line) {
    loop.post(MainLoop::Lane::Actor, [weak = weak_from_this(), text = std::move(line)] {
      const auto self = weak.lock();
      if (self && self->lineHandler) self->lineHandler(text);
    });
  }

  void tellEnd() {
    loop.post(MainLoop::Lane::Actor, [weak = weak_from_this()] {
      const auto self = weak.lock();
      if (!self) return;
      // The handlers often own the connection, which would keep itself alive.
      self->lineHandler = nullptr;
      if (const auto ended = std::exchange(self->endHandler, nullptr)) ended();
    });
  }

  MainLoop& loop;
  FileDescriptor descriptor;
  unsigned source = 0;
  LineBuffer lines;
  std::function<void(const std::string&)> lineHandler;
  std::function<void()> endHandler;
};

} // namespace

UnixService::~UnixService() {
  if (source != 0) g_source_remove(source);
  if (listening) ::unlink(path.c_str());
}

bool UnixService::offer(std::function<void(std::shared_ptr<LocalConnection>)> onConnection) {
  const auto place = socketPath(environment);
  const auto address = addressOf(place);
  if (!address || listening || connected(*address)) return false;
  // Nobody answers there: it is what a window that crashed has left.
  ::unlink(place.c_str());
  auto descriptor = newSocket();
  constexpr mode_t ownerOnly = 0600;
  constexpr int mostWaiting = 16;
  // The mode of the socket becomes that of its file: at no moment may others connect.
  const bool isReady = descriptor && ::fchmod(descriptor.get(), ownerOnly) == 0 &&
                       ::bind(descriptor.get(), asSocketAddress(*address), sizeof *address) == 0 &&
                       ::chmod(place.c_str(), ownerOnly) == 0 &&
                       ::listen(descriptor.get(), mostWaiting) == 0;
  if (!isReady) return false;
  path = place;
  listening = std::move(descriptor);
  handler = std::move(onConnection);
  const auto isComing = [](int, GIOCondition, gpointer data) -> gboolean {
    static_cast<UnixService*>(data)->accept();
    return G_SOURCE_CONTINUE;
  };
  source = g_unix_fd_add(listening.get(), G_IO_IN, isComing, this);
  return true;
}

void UnixService::accept() {
  FileDescriptor opened(::accept4(listening.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!opened || !isOwnUser(opened)) return;
  auto connection = std::make_shared<UnixConnection>(loop, std::move(opened));
  loop.post(MainLoop::Lane::Actor, [this, connection] { handler(connection); });
}

std::shared_ptr<LocalConnection> UnixService::connect() {
  const auto address = addressOf(socketPath(environment));
  if (!address) return nullptr;
  auto descriptor = connected(*address);
  if (!descriptor || !isOwnUser(descriptor)) return nullptr;
  return std::make_shared<UnixConnection>(loop, std::move(descriptor));
}

} // namespace velmor
