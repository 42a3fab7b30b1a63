#include "tests/desktop/ChangedHost.h"

namespace {

using namespace velmor;

/// Blocking work stops the window as well.
class FrozenHost : public ChangedHost {
public:
  std::optional<Desktop> openDesktop() override {
    auto desktop = host.openDesktop();
    dynamic_cast<GlibMainLoop&>(platform().mainLoop).serveDisplayWhileOccupied(false);
    return desktop;
  }
};

} // namespace

int main() {
  FrozenHost host;
  return ChangedHost::runWindow(host);
}
