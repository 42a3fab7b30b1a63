#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::tools {

/// A genre of the catalogue, with its place among the others.
class Genre {
public:
  /// Finds the genre that a free text names, such as "Deep House / Organic"; the longest
  /// name within the text wins. A text that names none gives nothing.
  static std::optional<Genre> read(std::string_view text);

  std::string name() const;

  /// 0 for the same genre to 1 for one that shares nothing with it.
  double distanceTo(Genre other) const;

private:
  explicit Genre(size_t place) : index(place) {}

  size_t index;
};

} // namespace velmor::tools
