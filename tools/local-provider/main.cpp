#include "Catalogue.h"
#include "CatalogueLocation.h"
#include "Options.h"
#include "Provider.h"
#include "Server.h"

#include <chrono>
#include <csignal>
#include <exception>
#include <iostream>
#include <span>

namespace {

using namespace velmor::tools;

int64_t secondsSince1970() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::seconds>(now).count();
}

/// The signals that end the program; blocked before any thread starts, so that all inherit it.
sigset_t blockedEndSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  return signals;
}

void run(const Options& options) {
  const auto signals = blockedEndSignals();
  const auto file = options.catalogue.empty() ? CatalogueLocation::find() : options.catalogue;
  const Provider provider({Catalogue::load(file), options.key, options.version}, secondsSince1970);
  const Server server(provider, {options.port, options.delay, options.record, options.key});
  std::cout << "http://127.0.0.1:" << server.port() << std::endl;
  int signal = 0;
  sigwait(&signals, &signal);
}

} // namespace

int main(int count, char** arguments) try {
  const std::span<const char* const> all(arguments, static_cast<size_t>(count));
  const auto read = Options::read(all.subspan(all.empty() ? 0 : 1));
  if (const auto* fault = std::get_if<std::string>(&read)) {
    std::cerr << *fault << "\n" << Options::usage();
    return 2;
  }
  const auto& options = std::get<Options>(read);
  if (options.help)
    std::cout << Options::usage() << Options::helpText();
  else
    run(options);
  return 0;
} catch (const std::exception& error) {
  std::cerr << "velmor-local-provider: " << error.what() << "\n";
  return 1;
}
