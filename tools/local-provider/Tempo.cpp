#include "Tempo.h"

#include <algorithm>
#include <cmath>

namespace velmor::tools {

Tempo Tempo::match(double current, double song) {
  Tempo best{song - current, 1};
  for (const double factor : {0.5, 2.0}) {
    const Tempo other{song * factor - current, factor};
    if (std::abs(other.difference) < std::abs(best.difference)) best = other;
  }
  return best;
}

double Tempo::distance(int tolerance) const {
  // A change to half or double time is a break in the set, however exact the figures.
  constexpr double breakShare = 0.2;
  const double share = std::abs(difference) / (3.0 * std::max(tolerance, 1));
  return std::min(1.0, share + (factor == 1 ? 0 : breakShare));
}

} // namespace velmor::tools
