#include "platform/linux/window/GtkDesktop.h"

#include "platform/Environment.h"
#include "platform/FileManager.h"
#include "platform/SystemLog.h"
#include "platform/Workspace.h"
#include "platform/linux/window/GtkAppWindow.h"
#include "platform/linux/window/GtkPropertyWatch.h"
#include "platform/linux/window/GtkScreens.h"

#include <X11/Xlib.h>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <cstdlib>
#include <list>
#include <stdexcept>
#include <string_view>

namespace velmor {

namespace {

constexpr auto applicationIdentifier = "app.velmor.Velmor";
constexpr auto applicationPath = "/app/velmor/Velmor";
constexpr unsigned privateFolder = 0700;
constexpr int longestAnswerMilliseconds = 3000;

/// Tells the instance that runs in this session, if any, that it was started again. False when
/// there is none. Throws when it does not answer: the toolkit by itself would wait for it for half
/// a minute and then go on as a second instance.
bool tellRunningInstance() {
  const GlibPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!bus) return false;
  GError* failed = nullptr;
  GVariant* const answer = g_dbus_connection_call_sync(
      bus.get(), applicationIdentifier, applicationPath, "org.gtk.Application", "Activate",
      g_variant_new("(a{sv})", nullptr), nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
      longestAnswerMilliseconds, nullptr, &failed);
  if (answer) {
    g_variant_unref(answer);
    return true;
  }
  const bool hangs = g_error_matches(failed, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE;
  g_error_free(failed);
  if (hangs)
    throw std::runtime_error("Velmor is running already, but it does not answer. End it first.");
  return false;
}

GtkWidget* makeAlert(const std::string& message, GtkDialogFlags flags) {
  auto* const dialog = gtk_message_dialog_new(nullptr, flags, GTK_MESSAGE_ERROR, GTK_BUTTONS_OK,
                                              "%s", message.c_str());
  gtk_window_set_title(GTK_WINDOW(dialog), "Velmor");
  return dialog;
}

} // namespace

/// Those who want to hear what happens on the whole desktop.
class GtkDesktop::Observers {
public:
  explicit Observers(MainLoop& mainLoop)
      : loop(mainLoop)
      , rootWindow(gdk_get_default_root_window(), [this](std::string_view property) {
        if (property == "_NET_ACTIVE_WINDOW")
          notify(DesktopNotification::ApplicationActivated);
        else if (property == "_NET_CURRENT_DESKTOP")
          notify(DesktopNotification::ActiveSpaceChanged);
      }) {
    const auto changed = [](GdkScreen*, gpointer data) {
      static_cast<Observers*>(data)->notify(DesktopNotification::ScreenParametersChanged);
    };
    auto* const screen = gdk_screen_get_default();
    signals.connect(screen, "monitors-changed", +changed, this);
    signals.connect(screen, "size-changed", +changed, this);
  }

  [[nodiscard]] std::unique_ptr<DesktopObservation> add(DesktopNotification notification,
                                                        MainLoop::Work work) {
    struct Observation : DesktopObservation {
      explicit Observation(std::shared_ptr<Observer> added) : observer(std::move(added)) {}
      std::shared_ptr<Observer> observer;
    };
    auto observer = std::make_shared<Observer>(Observer{notification, std::move(work)});
    observers.emplace_back(observer);
    return std::make_unique<Observation>(std::move(observer));
  }

private:
  struct Observer {
    DesktopNotification notification;
    MainLoop::Work work;
  };

  void notify(DesktopNotification notification) {
    observers.remove_if([](const auto& observer) { return observer.expired(); });
    for (const auto& observer : observers) {
      if (const auto known = observer.lock(); known->notification != notification) continue;
      loop.post(MainLoop::Lane::Display, [observer] {
        if (const auto told = observer.lock()) told->work();
      });
    }
  }

  MainLoop& loop;
  std::list<std::weak_ptr<Observer>> observers;
  GtkPropertyWatch rootWindow;
  SignalConnections signals;
};

std::unique_ptr<GtkDesktop> GtkDesktop::open(const Platform& platform) {
  // Only on X11 may a window place and raise itself; a Wayland session offers it as well.
  gdk_set_allowed_backends("x11");
  WebKitProfile::drawOnProcessor();
  gtk_disable_setlocale();
  g_set_prgname("velmor");
  g_set_application_name("Velmor");
  if (gtk_init_check(nullptr, nullptr) == FALSE) return nullptr;
  return std::unique_ptr<GtkDesktop>(new GtkDesktop(platform));
}

GtkDesktop::GtkDesktop(const Platform& thePlatform)
    : platform(thePlatform)
    , application(g_application_new(applicationIdentifier, G_APPLICATION_DEFAULT_FLAGS))
    , observers(std::make_unique<Observers>(platform.mainLoop)) {
  watchDisplay();
}

GtkDesktop::~GtkDesktop() = default;

std::shared_ptr<Window> GtkDesktop::makeWindow(const Rect& content, unsigned styleMask) {
  auto made =
      std::make_shared<GtkAppWindow>(GtkAppWindow::Context{.loop = platform.mainLoop,
                                                           .menu = menu,
                                                           .profile = webProfile(),
                                                           .properties = properties,
                                                           .onClosed = [this] { windowClosed(); }},
                                     content, styleMask);
  windows.emplace_back(made);
  return made;
}

void GtkDesktop::watchDisplay() {
  const auto lost = [](Display*, void* data) { static_cast<GtkDesktop*>(data)->displayLost(); };
  // The toolkit's own handler comes before ours and would end the process.
  XSetIOErrorHandler([](Display*) { return 0; });
  XSetIOErrorExitHandler(gdk_x11_get_default_xdisplay(), lost, this);
}

void GtkDesktop::displayLost() {
  platform.log.write("Velmor: the connection to the display is lost.");
  if (const auto told = delegate.lock()) told->applicationHasLostDisplay();
  // Nothing is cleaned up: every window would ask the display once more.
  std::_Exit(EXIT_FAILURE);
}

WebKitProfile& GtkDesktop::webProfile() {
  if (!profile) {
    const auto folder = platform.environment.applicationSupportDirectory() / "Velmor" / "web";
    try {
      platform.files.createFolder(folder, privateFolder);
    } catch (const FileError& error) {
      // The page then keeps nothing from one start to the next, and works.
      platform.log.write(std::string("Velmor: no folder for the page's data: ") + error.what());
    }
    profile.emplace(folder);
  }
  return *profile;
}

std::shared_ptr<Window> GtkDesktop::window(const std::string& title) const {
  for (const auto& candidate : windows) {
    if (auto found = candidate.lock(); found && found->title() == title) return found;
  }
  return nullptr;
}

std::vector<Screen> GtkDesktop::screens() const {
  return GtkScreens::all();
}

Point GtkDesktop::mouseLocation() const {
  return GtkScreens::mouseLocation();
}

std::unique_ptr<DesktopObservation> GtkDesktop::observe(DesktopNotification notification,
                                                        MainLoop::Work work) {
  return observers->add(notification, std::move(work));
}

bool GtkDesktop::handOverToRunningInstance() {
  const auto startedAgain = [](GApplication*, gpointer data) {
    const auto& desktop = *static_cast<GtkDesktop*>(data);
    if (desktop.alert) gtk_window_present(GTK_WINDOW(desktop.alert));
    if (const auto told = desktop.delegate.lock()) told->applicationShouldHandleReopen();
  };
  if (tellRunningInstance()) return true;
  auto* const self = application.get();
  signals.connect(self, "activate", +startedAgain, this);
  // Without a session bus nobody can be asked, and there may be several.
  if (g_application_register(self, nullptr, nullptr) == FALSE) return false;
  if (g_application_get_is_remote(self) == FALSE) {
    watchSessionBus();
    return false;
  }
  g_application_activate(self);
  g_dbus_connection_flush_sync(g_application_get_dbus_connection(self), nullptr, nullptr);
  return true;
}

void GtkDesktop::watchSessionBus() {
  const auto closed = [](GDBusConnection*, gboolean, GError*, gpointer data) {
    static_cast<GtkDesktop*>(data)->platform.log.write("Velmor: the session bus is gone: the end.");
  };
  // The toolkit then asks the process to end, as a system that ends the session does.
  signals.connect(g_application_get_dbus_connection(application.get()), "closed", +closed, this);
}

void GtkDesktop::activateIgnoringOtherApps() {
  for (const auto& candidate : windows) {
    if (const auto shown = candidate.lock(); shown && shown->isVisible()) return shown->activate();
  }
}

void GtkDesktop::showAlert(const std::string& message) {
  auto* const dialog = makeAlert(message, GtkDialogFlags{});
  // The main window stays above all others, and must not hide it.
  gtk_window_set_keep_above(GTK_WINDOW(dialog), TRUE);
  const auto close = [](GtkDialog* answered, int, gpointer) {
    gtk_widget_destroy(GTK_WIDGET(answered));
  };
  g_signal_connect(dialog, "response", G_CALLBACK(+close), nullptr);
  gtk_widget_show(dialog);
}

void GtkDesktop::runAlert(const std::string& message) {
  auto* const dialog = makeAlert(message, GTK_DIALOG_MODAL);
  bool answered = false;
  const auto answer = [](GtkDialog*, int, gpointer data) { *static_cast<bool*>(data) = true; };
  SignalConnections response;
  response.connect(dialog, "response", +answer, &answered);
  gtk_widget_show(dialog);
  alert = dialog;
  while (!answered && !platform.workspace.isTerminating())
    g_main_context_iteration(nullptr, TRUE);
  alert = nullptr;
  gtk_widget_destroy(dialog);
}

void GtkDesktop::windowClosed() {
  const auto isOpen = [](const auto& candidate) {
    const auto open = candidate.lock();
    return open && open->isVisible();
  };
  if (std::any_of(windows.begin(), windows.end(), isOpen)) return;
  const auto told = delegate.lock();
  if (told && told->applicationShouldTerminateAfterLastWindowClosed())
    platform.workspace.terminate();
}

} // namespace velmor
