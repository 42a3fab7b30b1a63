#include "crate/Crate.h"

#include "crate/MixxxCrate.h"
#include "crate/MusicFolder.h"
#include "platform/async/Waiting.h"

namespace velmor {

Crate::Crate(MainLoop& mainLoop, std::function<CratePlaces()> places)
    : loop(mainLoop), findPlaces(std::move(places)) {}

Task<Crate::Contents> Crate::contents() {
  const auto work = [places = findPlaces, known = last] { return read(places(), known); };
  last = co_await onWorker(loop, work);
  co_return last.contents;
}

Crate::Stamp Crate::stampOf(const std::filesystem::path& file) {
  std::error_code unreadable;
  return {file, std::filesystem::last_write_time(file, unreadable),
          std::filesystem::file_size(file, unreadable)};
}

Crate::Reading Crate::read(const CratePlaces& places, const Reading& last) {
  // Taken before the reading: what changes meanwhile is read the next time.
  std::vector<Stamp> stamps;
  for (const auto& library : places.mixxxLibraries)
    stamps.push_back(stampOf(library));
  std::vector<MusicFolder> folders(places.musicFolders.begin(), places.musicFolders.end());
  for (std::size_t index = 0; index < folders.size(); ++index)
    stamps.push_back({places.musicFolders[index], {}, folders[index].state()});
  if (last.contents && stamps == last.stamps) return last;

  std::vector<CrateSource> sources;
  for (const auto& library : places.mixxxLibraries)
    sources.push_back(MixxxCrate::read(library));
  for (const auto& folder : folders)
    sources.push_back(folder.read(places.tagCache));
  auto contents = std::make_shared<CrateContents>(CrateContents::joined(std::move(sources)));
  return {std::move(stamps), std::move(contents)};
}

} // namespace velmor
