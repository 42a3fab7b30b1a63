#pragma once

#include "Song.h"

#include <filesystem>
#include <istream>
#include <vector>

namespace velmor::tools {

/// The songs that the provider knows. The file is a JSON array of objects whose members are
/// the fields of `Song`.
class Catalogue {
public:
  /// Throws `CatalogueError`; the message names the entry and what is wrong with it.
  static std::vector<Song> read(std::istream& input);
  static std::vector<Song> load(const std::filesystem::path& file);
};

} // namespace velmor::tools
