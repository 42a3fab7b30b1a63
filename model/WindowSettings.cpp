#include "model/WindowSettings.h"

#include "model/RecordReader.h"

namespace velmor {

void to_json(nlohmann::json& json, const WindowSettings& window) {
  json = {
      {"x", window.x},
      {"y", window.y},
      {"width", window.width},
      {"height", window.height},
  };
}

void from_json(const nlohmann::json& json, WindowSettings& window) {
  const RecordReader members(json);
  window.x = members.integer("x");
  window.y = members.integer("y");
  window.width = members.integer("width");
  window.height = members.integer("height");
}

} // namespace velmor
