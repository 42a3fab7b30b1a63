#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

/// What the page posts: a command to run and what to run it with. Any thread.
struct PageMessage {
  std::string id;
  std::string method;
  /// Always an array.
  nlohmann::json args;

  /// Nothing for what is no message: a text that is not JSON, or no object with a text as "id" and
  /// a text as "method". A value that JSON can write but nothing here can hold is null: a number
  /// out of every range (1e400), a text with half a character ("\ud800"), and whatever lies more
  /// than `depthLimit` levels deep.
  [[nodiscard]] static std::optional<PageMessage> read(std::string_view body);

  static constexpr int depthLimit = 32;
};

} // namespace velmor
