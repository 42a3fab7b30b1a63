#include "platform/linux/desktop/GioWorkspace.h"

#include "platform/SystemLog.h"
#include "platform/linux/bus/SessionBus.h"
#include "platform/linux/glib/GlibHandles.h"
#include "platform/linux/loop/GlibMainLoop.h"
#include "platform/linux/loop/ProgramEnd.h"

#include <gio/gio.h>

#include <array>
#include <chrono>
#include <utility>

namespace velmor {

namespace {

void launch(const std::string& url, const std::vector<std::string>& withoutVariables,
            SystemLog& log) {
  const GlibPtr<GAppLaunchContext> context(g_app_launch_context_new());
  for (const auto& variable : withoutVariables)
    g_app_launch_context_unsetenv(context.get(), variable.c_str());
  GError* failure = nullptr;
  if (g_app_info_launch_default_for_uri(url.c_str(), context.get(), &failure) != FALSE) return;
  const GlibPtr<GError> error(failure);
  log.write(std::string("Velmor: could not open a link: ") + error->message);
}

/// File managers start within this time, even from a slow disk.
constexpr std::chrono::seconds patience{10};

/// Asks the desktop's file manager to open at the file. False when there is none that can.
bool askFileManager(const std::string& address, const std::string& uri,
                    const std::stop_token& stop) {
  const auto end = std::chrono::steady_clock::now() + patience;
  BusWait wait(end, stop);
  const auto connection = wait.connect(address);
  if (!connection) return false;
  const std::array<const char*, 2> uris{uri.c_str(), nullptr};
  auto* const arguments = g_variant_new("(^ass)", uris.data(), "");
  std::vector<BusCall> calls;
  calls.push_back({.destination = "org.freedesktop.FileManager1",
                   .path = "/org/freedesktop/FileManager1",
                   .interface = "org.freedesktop.FileManager1",
                   .method = "ShowItems",
                   .arguments = VariantPtr(g_variant_ref_sink(arguments)),
                   .replyType = "()",
                   .startsService = true});
  return BusExchange::make(connection, calls, end, stop).replies.front() != nullptr;
}

std::string uriOf(const std::filesystem::path& path) {
  return takeText(g_filename_to_uri(path.c_str(), nullptr, nullptr));
}

} // namespace

GioWorkspace::GioWorkspace(GlibMainLoop& mainLoop, const Environment& theEnvironment,
                           std::stop_source quitSource, EndDeadline& endDeadline,
                           SystemLog& systemLog, std::vector<std::string> ownVariables)
    : loop(mainLoop)
    , environment(theEnvironment)
    , quit(std::move(quitSource))
    , deadline(endDeadline)
    , log(systemLog)
    , hidden(std::move(ownVariables)) {}

void GioWorkspace::openURL(const std::string& url) {
  if (!GlibPtr<char>(g_uri_parse_scheme(url.c_str()))) return;
  // Finding the program reads files of others, which may take for ever. Nothing is told of it.
  loop.startWorker([url, without = hidden, &log = log] { launch(url, without, log); }, [] {});
}

void GioWorkspace::showInFileManager(const std::filesystem::path& file) {
  const auto work = [file, address = sessionBusAddress(environment), stop = quit.get_token(),
                     without = hidden, &log = log] {
    if (address && askFileManager(*address, uriOf(file), stop)) return;
    if (!stop.stop_requested()) launch(uriOf(file.parent_path()), without, log);
  };
  loop.startWorker(work, [] {});
}

void GioWorkspace::willTerminate() {
  deadline.start();
}

void GioWorkspace::terminate() {
  willTerminate();
  quit.request_stop();
  loop.quit();
}

} // namespace velmor
