#include "Genre.h"

#include "Text.h"

#include <array>
#include <cmath>

namespace velmor::tools {
namespace {

/// A point on the map of genres: related ones lie close together.
struct Place {
  std::string_view name;
  double x = 0; ///< from songs for listening to tracks for the floor
  double y = 0; ///< from straight beats to broken ones
};

constexpr std::array<Place, 18> places{{
    {"House", 6, 2},
    {"Tech House", 7, 2},
    {"Deep House", 6, 1},
    {"Techno", 9, 1.5},
    {"Melodic Techno", 8, 1},
    {"Trance", 9.5, 0},
    {"Progressive House", 7.5, 0},
    {"Drum & Bass", 8, 8},
    {"Dubstep", 7.5, 7},
    {"UK Garage", 6, 5.5},
    {"Disco", 4, 2.5},
    {"Funk", 3, 3.5},
    {"Hip-Hop", 2.5, 8},
    {"Pop", 1.5, 3},
    {"R&B", 2, 6},
    {"Synth-Pop", 2, 1.5},
    {"Indie Dance", 4, 1},
    {"Rock", 0, 1},
}};

/// Other spellings that sources write.
struct Alias {
  std::string_view spelling;
  std::string_view name;
};

constexpr std::array<Alias, 14> aliases{{
    {"drum and bass", "Drum & Bass"},
    {"drum n bass", "Drum & Bass"},
    {"drum'n'bass", "Drum & Bass"},
    {"dnb", "Drum & Bass"},
    {"jungle", "Drum & Bass"},
    {"garage", "UK Garage"},
    {"2-step", "UK Garage"},
    {"hip hop", "Hip-Hop"},
    {"rap", "Hip-Hop"},
    {"rnb", "R&B"},
    {"soul", "R&B"},
    {"synthpop", "Synth-Pop"},
    {"progressive", "Progressive House"},
    {"indie", "Indie Dance"},
}};

size_t indexOf(std::string_view name) {
  size_t index = 0;
  while (places.at(index).name != name)
    ++index;
  return index;
}

} // namespace

std::optional<Genre> Genre::read(std::string_view text) {
  const auto whole = folded(text);
  std::optional<size_t> found;
  size_t length = 0;
  const auto offer = [&](std::string_view spelling, size_t index) {
    if (spelling.size() <= length || whole.find(spelling) == std::string::npos) return;
    found = index;
    length = spelling.size();
  };
  for (size_t index = 0; index < places.size(); ++index)
    offer(folded(places[index].name), index);
  for (const auto& alias : aliases)
    offer(alias.spelling, indexOf(alias.name));
  if (!found) return std::nullopt;
  return Genre(*found);
}

std::string Genre::name() const {
  return std::string(places.at(index).name);
}

double Genre::distanceTo(Genre other) const {
  constexpr double farthest = 5;
  const auto& here = places.at(index);
  const auto& there = places.at(other.index);
  return std::min(1.0, std::hypot(here.x - there.x, here.y - there.y) / farthest);
}

} // namespace velmor::tools
