#include "JsonBody.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace velmor::tools {
namespace {

using nlohmann::json;

/// Follows the reader through the document and keeps the path of the first repeated member.
class RepeatedMembers {
public:
  void operator()(json::parse_event_t event, const json& value) {
    switch (event) {
    case json::parse_event_t::object_start:
      open(false);
      return;
    case json::parse_event_t::array_start:
      open(true);
      return;
    case json::parse_event_t::object_end:
    case json::parse_event_t::array_end:
      frames.pop_back();
      return;
    case json::parse_event_t::key:
      enter(value.get<std::string>());
      return;
    case json::parse_event_t::value:
      countElement();
      return;
    }
  }

  const std::optional<std::string>& path() const { return repeated; }

private:
  struct Frame {
    bool isArray = false;
    size_t elements = 0;
    std::string member;
    std::set<std::string> members;
  };

  void open(bool isArray) {
    countElement();
    frames.push_back({isArray, 0, {}, {}});
  }

  void enter(const std::string& name) {
    auto& frame = frames.back();
    frame.member = name;
    if (!frame.members.insert(name).second && !repeated) repeated = currentPath();
  }

  void countElement() {
    if (!frames.empty() && frames.back().isArray) ++frames.back().elements;
  }

  std::string currentPath() const {
    json::json_pointer path;
    for (const auto& frame : frames) {
      if (frame.isArray)
        path /= frame.elements - 1;
      else
        path /= frame.member;
    }
    return path.to_string();
  }

  std::vector<Frame> frames;
  std::optional<std::string> repeated;
};

} // namespace

std::variant<json, Difference> JsonBody::read(std::string_view body) {
  RepeatedMembers members;
  const auto follow = [&members](int, json::parse_event_t event, json& value) {
    members(event, value);
    return true;
  };
  auto document = json::parse(body, follow, /*allow_exceptions=*/false);
  if (document.is_discarded()) return Difference{"/", "the body is not JSON"};
  if (!document.is_object()) return Difference{"/", "the body is not a JSON object"};
  if (members.path()) return Difference{*members.path(), "member is written twice"};
  return document;
}

} // namespace velmor::tools
