#include "app/AppController.h"

namespace velmor {

void AppController::restoreWindow() {}
void AppController::bringToFront() {}
void AppController::minimize() {}

} // namespace velmor
