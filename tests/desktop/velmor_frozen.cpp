#include "tests/desktop/ChangedHost.h"

namespace {

using namespace velmor;

/// Blocking work stops the window as well.
class FrozenLoop : public ChangedLoop {
public:
  using ChangedLoop::ChangedLoop;

  void occupyActor(Work work, Work done) override {
    work();
    real.post(Lane::Actor, std::move(done));
  }
};

} // namespace

int main() {
  return ChangedHost<FrozenLoop>().runWindow();
}
