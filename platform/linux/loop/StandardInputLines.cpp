#include "platform/linux/loop/StandardInputLines.h"

#include <glib-unix.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

namespace velmor {

StandardInputLines::StandardInputLines(MainLoop& mainLoop, int openDescriptor)
    : loop(mainLoop), descriptor(openDescriptor) {}

StandardInputLines::~StandardInputLines() {
  if (source != 0) g_source_remove(source);
}

void StandardInputLines::read(std::function<void(std::string)> onLine,
                              std::function<void()> onEnd) {
  lineHandler = std::make_shared<const std::function<void(std::string)>>(std::move(onLine));
  endHandler = std::move(onEnd);
  const auto isReadable = [](int, GIOCondition, gpointer data) -> gboolean {
    auto& self = *static_cast<StandardInputLines*>(data);
    if (self.takeChunk()) return G_SOURCE_CONTINUE;
    self.end();
    return G_SOURCE_REMOVE;
  };
  const auto news = static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR | G_IO_NVAL);
  source = g_unix_fd_add(descriptor, news, isReadable, this);
}

bool StandardInputLines::takeChunk() {
  std::array<char, 65536> chunk{};
  const auto count = ::read(descriptor, chunk.data(), chunk.size());
  if (count < 0) return errno == EINTR || errno == EAGAIN;
  if (count == 0) return false;
  lines.take({chunk.data(), static_cast<std::size_t>(count)},
             [this](std::string line) { deliver(std::move(line)); });
  return true;
}

void StandardInputLines::deliver(std::string text) {
  loop.post(MainLoop::Lane::Actor,
            [handler = lineHandler, line = std::move(text)] { (*handler)(line); });
}

void StandardInputLines::end() {
  source = 0;
  if (!lines.unfinished().empty()) deliver(lines.unfinished());
  loop.post(MainLoop::Lane::Actor, std::exchange(endHandler, nullptr));
}

} // namespace velmor
