#include "app/crate/MusicPlaces.h"

#include "base/Text.h"
#include "nowplaying/readers/MixxxLibrary.h"
#include "platform/Environment.h"

namespace velmor {

namespace {

bool isFolder(const std::filesystem::path& path) {
  std::error_code unreadable;
  return std::filesystem::is_directory(path, unreadable);
}

} // namespace

CratePlaces placesOfMusic(const Platform& platform) {
  const auto& environment = platform.environment;
  CratePlaces places{.mixxxLibraries = MixxxLibrary::libraryDatabasePaths(platform),
                     .tagCache = environment.cacheDirectory() / "Velmor" / "tags.sqlite"};
  if (const auto named = environment.variable("VELMOR_CRATE")) {
    for (const std::filesystem::path place : text::split(*named, ':')) {
      // What is not there is told by the reading.
      (isFolder(place) ? places.musicFolders : places.collections).push_back(place);
    }
  } else if (const auto music = environment.musicDirectory(); music && isFolder(*music)) {
    places.musicFolders.push_back(*music);
  }
  return places;
}

} // namespace velmor
