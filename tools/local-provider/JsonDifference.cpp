#include "JsonDifference.h"

#include <nlohmann/json.hpp>

#include <string>

namespace velmor::tools {
namespace {

using nlohmann::json;
using Pointer = json::json_pointer;

std::optional<Difference> compare(const json& wanted, const json& received, const Pointer& path);

Difference difference(const Pointer& path, std::string message) {
  // The pointer to the whole document is the empty text, which would name nothing to a reader.
  return {path.empty() ? "/" : path.to_string(), std::move(message)};
}

bool sameKind(const json& wanted, const json& received) {
  if (wanted.is_number_integer()) return received.is_number_integer();
  if (wanted.is_number_float()) return received.is_number_float();
  return wanted.type() == received.type();
}

std::optional<Difference> compareObjects(const json& wanted, const json& received,
                                         const Pointer& path) {
  for (const auto& [name, value] : wanted.items())
    if (!received.contains(name)) return difference(path / name, "missing member");
  for (const auto& [name, value] : received.items())
    if (!wanted.contains(name)) return difference(path / name, "unexpected member");
  for (const auto& [name, value] : wanted.items())
    if (auto found = compare(value, received.at(name), path / name)) return found;
  return std::nullopt;
}

std::optional<Difference> compareArrays(const json& wanted, const json& received,
                                        const Pointer& path) {
  for (size_t index = 0; index < wanted.size(); ++index) {
    if (index >= received.size()) return difference(path / index, "missing element");
    if (auto found = compare(wanted[index], received[index], path / index)) return found;
  }
  if (received.size() > wanted.size())
    return difference(path / wanted.size(), "unexpected element");
  return std::nullopt;
}

std::optional<Difference> compare(const json& wanted, const json& received, const Pointer& path) {
  if (!sameKind(wanted, received)) {
    const std::string kind = wanted.is_number_integer() ? "integer" : wanted.type_name();
    return difference(path, "must be of type " + kind);
  }
  if (wanted.is_object()) return compareObjects(wanted, received, path);
  if (wanted.is_array()) return compareArrays(wanted, received, path);
  if (wanted != received) return difference(path, "must be " + wanted.dump());
  return std::nullopt;
}

} // namespace

std::optional<Difference> JsonDifference::first(const json& wanted, const json& received) {
  return compare(wanted, received, Pointer());
}

} // namespace velmor::tools
