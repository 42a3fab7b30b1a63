#include "app/Program.h"

#include "app/AppDelegate.h"
#include "app/DoctorTrials.h"
#include "app/StreamWebView.h"
#include "app/TrackText.h"
#include "app/crate/CrateText.h"
#include "base/Json.h"
#include "base/Number.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "platform/Application.h"
#include "platform/LineInput.h"
#include "platform/Workspace.h"
#include "platform/async/Waiting.h"
#include "ui/WebBridge.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

namespace velmor {

namespace {

constexpr int failure = 1;
constexpr int unusable = 2;

std::shared_ptr<AppController> makeController(const Platform& platform) {
  return std::make_shared<AppController>(platform, std::make_shared<ConfigStore>(platform));
}

} // namespace

Program::Program(Host& theHost, std::ostream& output, std::ostream& errors)
    : host(theHost), out(output), err(errors) {}

int Program::run(const std::vector<std::string>& arguments) {
  const auto line = CommandLine::parse(arguments);
  if (!line) {
    err << CommandLine::usage << '\n';
    return unusable;
  }
  try {
    const int result = carryOut(*line);
    out.flush();
    const bool isLost = !out && result == 0;
    return isLost ? fail("The output could not be written.") : result;
  } catch (const std::exception& error) {
    return fail(messageOf(error));
  }
}

int Program::carryOut(const CommandLine& line) {
  switch (line.command) {
  case CommandLine::Command::window:
    return runWindow();
  case CommandLine::Command::now:
    return runNow(line);
  case CommandLine::Command::suggest:
    return runCommand(line.fromCrate ? &Program::suggestFromCrate : &Program::suggest, line.json);
  case CommandLine::Command::after:
    trackName = line.track;
    return runCommand(&Program::after, line.json);
  case CommandLine::Command::crate:
    return runCommand(&Program::crate, line.json);
  case CommandLine::Command::doctor:
    return runDoctor(line);
  case CommandLine::Command::bridge:
    return runBridge();
  case CommandLine::Command::serve:
    return runServe(line);
  case CommandLine::Command::version: {
    BuildInfo info(host.platform());
    out << "Velmor " << info.version() << " (" << info.buildDate() << ")\n";
    return 0;
  }
  case CommandLine::Command::help:
    out << CommandLine::help;
    return 0;
  }
  return unusable;
}

int Program::runWindow() {
  const auto desktop = host.openDesktop();
  if (!desktop) {
    err << "velmor: the window needs an X11 display (see DISPLAY; under Wayland that is XWayland); "
           "the commands now, suggest and "
           "bridge and the demo work without one.\n";
    return unusable;
  }
  if (desktop->application.handOverToRunningInstance()) return 0;
  const auto delegate = std::make_shared<AppDelegate>(host.platform(), *desktop);
  desktop->application.setDelegate(delegate);
  host.onTerminationRequest([&] { delegate->applicationShouldClose(); });
  const bool launched = delegate->applicationDidFinishLaunching();
  if (launched) delegate->offerTo(host.localService());
  host.run();
  return launched ? 0 : failure;
}

int Program::runBridge() {
  const auto& platform = host.platform();
  const auto controller = makeController(platform);
  const auto bridge = std::make_shared<WebBridge>(platform.mainLoop, controller);
  const auto end = [&] { platform.workspace.terminate(); };
  const auto view = std::make_shared<StreamWebView>(out, [&] {
    if (status == 0) status = fail("The answers could not be written.");
    end();
  });
  controller->setWebBridge(bridge);
  bridge->setWebView(view);
  view->addMessageHandler(WebBridge::handlerName, [&](const auto& name, const auto& body) {
    bridge->didReceive(name, body);
  });

  const auto endWhenIdle = [&] {
    bridge->whenIdle(end);
    if (bridge->isIdle()) end();
  };
  host.standardInput().read([&](const auto& line) { view->post(WebBridge::handlerName, line); },
                            endWhenIdle);
  host.onTerminationRequest(end);
  host.run();
  return status;
}

int Program::runDoctor(const CommandLine& line) {
  auto report = Doctor(host.platform(), host.systemStatus()).examine();
  if (line.ask || line.listen) {
    const int tried = runTask(tryOut(line, report));
    if (tried != 0) return tried;
  }
  out << (line.json ? report.json() : report.readable()) << std::flush;
  return report.isReady() ? 0 : failure;
}

Task<void> Program::tryOut(const CommandLine& line, DoctorReport& report) {
  const auto add = [&](std::vector<DoctorFinding> findings) {
    std::ranges::move(findings, std::back_inserter(report.trials));
  };
  const auto& platform = host.platform();
  if (line.ask) {
    err << DoctorTrials::announcementOfAsking(platform) << std::flush;
    const auto ask = [&platform] { return DoctorTrials::ask(platform); };
    auto findings = co_await onWorker(platform.mainLoop, ask);
    add(std::move(findings));
  }
  if (line.listen) {
    err << DoctorTrials::announcementOfListening << std::flush;
    const auto listen = [&platform] { return DoctorTrials::listen(platform); };
    auto findings = co_await onWorker(platform.mainLoop, listen);
    add(std::move(findings));
  }
}

int Program::runCommand(Command command, bool json) {
  const auto controller = makeController(host.platform());
  if (host.isErrorTerminal()) showReading(*controller);
  return runTask((this->*command)(*controller, json));
}

void Program::showReading(AppController& controller) {
  controller.whenCrateChanges([&controller, this] {
    const auto state = controller.knownOfCrate();
    constexpr auto clearLine = "\r\033[K";
    err << clearLine;
    if (state.reading) {
      err << "Reading your music: " << number::formatFixed(100 * state.progress, 0) << " %";
    }
    err << std::flush;
  });
}

int Program::runTask(Task<void> task) {
  TaskGroup tasks(host.platform().mainLoop);
  const auto end = [&] { host.platform().workspace.terminate(); };
  tasks.whenEmpty(end);
  tasks.start(reporting(std::move(task)));
  host.onTerminationRequest([&] {
    status = failure;
    end();
  });
  host.run();
  return status;
}

Task<void> Program::reporting(Task<void> command) {
  try {
    co_await command;
  } catch (const std::exception& error) {
    status = fail(messageOf(error));
  }
}

Task<void> Program::after(AppController& controller, bool json) {
  const auto result = co_await controller.suggestAfterNamed(trackName);
  out << (json ? jsonEncoder().encode(result) + "\n" : TrackText::readable(result, "After"))
      << std::flush;
}

Task<void> Program::crate(AppController& controller, bool json) {
  const auto music = co_await controller.crateContents();
  out << (json ? CrateText::json(*music) : CrateText::readable(*music)) << std::flush;
  if (music->tracks.empty()) status = failure;
}

int Program::fail(const std::string& message) {
  err << text::printable(message) << '\n';
  return failure;
}

} // namespace velmor
