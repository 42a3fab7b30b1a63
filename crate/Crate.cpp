#include "crate/Crate.h"

#include "crate/MixxxCrate.h"
#include "platform/async/Waiting.h"

namespace velmor {

Crate::Crate(MainLoop& mainLoop, std::function<CratePlaces()> places)
    : loop(mainLoop), findPlaces(std::move(places)) {}

Task<Crate::Contents> Crate::contents() {
  const auto work = [places = findPlaces, known = last] { return read(places(), known); };
  last = co_await onWorker(loop, work);
  co_return last.contents;
}

std::vector<Crate::Stamp> Crate::stampsOf(const CratePlaces& places) {
  std::vector<Stamp> stamps;
  for (const auto& library : places.mixxxLibraries) {
    std::error_code unreadable;
    stamps.push_back({library, std::filesystem::last_write_time(library, unreadable),
                      std::filesystem::file_size(library, unreadable)});
  }
  return stamps;
}

Crate::Reading Crate::read(const CratePlaces& places, const Reading& last) {
  // Taken before the reading: what changes meanwhile is read the next time.
  auto stamps = stampsOf(places);
  if (last.contents && stamps == last.stamps) return last;
  std::vector<CrateSource> sources;
  for (const auto& library : places.mixxxLibraries)
    sources.push_back(MixxxCrate::read(library));
  auto contents = std::make_shared<CrateContents>(CrateContents::joined(std::move(sources)));
  return {std::move(stamps), std::move(contents)};
}

} // namespace velmor
