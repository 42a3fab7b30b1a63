#include "CamelotCode.h"

#include "Numbers.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace velmor::tools {

std::optional<CamelotCode> CamelotCode::read(std::string_view text) {
  if (text.size() < 2) return std::nullopt;
  const auto number = wholeNumber(text.substr(0, text.size() - 1));
  if (!number || *number < 1 || *number > 12) return std::nullopt;
  switch (text.back()) {
  case 'a':
  case 'A':
    return CamelotCode{*number, false};
  case 'b':
  case 'B':
    return CamelotCode{*number, true};
  default:
    return std::nullopt;
  }
}

std::string CamelotCode::text() const {
  return std::to_string(number) + (major ? "B" : "A");
}

int CamelotCode::stepsTo(CamelotCode other) const {
  const int forward = (other.number - number + 12) % 12;
  return forward > 6 ? forward - 12 : forward;
}

double CamelotCode::distanceTo(CamelotCode other) const {
  // The neighbours on a ring and the relative key mix well, a diagonal or two steps mix with
  // care; beyond that every further step sounds worse.
  constexpr std::array distances{0.0, 0.15, 0.5, 0.75, 0.85, 0.9, 0.95, 1.0};
  const int steps = std::abs(stepsTo(other)) + (major == other.major ? 0 : 1);
  return distances.at(static_cast<size_t>(std::min(steps, 7)));
}

} // namespace velmor::tools
