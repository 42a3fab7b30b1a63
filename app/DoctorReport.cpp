#include "app/DoctorReport.h"

#include "model/JsonCoding.h"

#include <algorithm>

namespace velmor {

namespace {

using State = DoctorFinding::State;

constexpr std::size_t nameWidth = 20;

const char* nameOf(State state) {
  switch (state) {
  case State::ready:
    return "ready";
  case State::absent:
    return "absent";
  case State::faulty:
    return "faulty";
  }
  return "";
}

std::string line(const DoctorFinding& finding) {
  auto name = finding.name;
  name.resize(std::max(name.size(), nameWidth), ' ');
  auto state = std::string(nameOf(finding.state));
  state.resize(8, ' ');
  auto result = "  " + name + state + finding.detail + "\n";
  if (!finding.advice.empty()) result += std::string(nameWidth + 10, ' ') + finding.advice + "\n";
  return result;
}

std::string lines(const char* heading, const std::vector<DoctorFinding>& findings) {
  std::string result = std::string(heading) + "\n";
  for (const auto& finding : findings)
    result += line(finding);
  return result + "\n";
}

nlohmann::json list(const std::vector<DoctorFinding>& findings) {
  auto result = nlohmann::json::array();
  for (const auto& finding : findings) {
    result.push_back({{"name", finding.name},
                      {"state", nameOf(finding.state)},
                      {"detail", finding.detail},
                      {"advice", finding.advice}});
  }
  return result;
}

} // namespace

std::string DoctorReport::readable() const {
  return lines("Sources, in the order in which they are asked", sources) +
         lines("This machine", surroundings) +
         (trackCanBeFound ? "A track can be found" : "No track can be found") +
         (trackCanBeFound == suggestionCanBeAsked ? ", and " : ", but ") +
         (suggestionCanBeAsked ? "suggestions can be asked for.\n"
                               : "no suggestion can be asked for.\n");
}

std::string DoctorReport::json() const {
  return jsonEncoder().encode(nlohmann::json{{"sources", list(sources)},
                                             {"surroundings", list(surroundings)},
                                             {"trackCanBeFound", trackCanBeFound},
                                             {"suggestionCanBeAsked", suggestionCanBeAsked}}) +
         "\n";
}

} // namespace velmor
