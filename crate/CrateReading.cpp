#include "crate/CrateReading.h"

#include "crate/sources/CollectionFile.h"
#include "crate/sources/MixxxCrate.h"
#include "crate/sources/MusicFolder.h"

#include <algorithm>
#include <functional>

namespace velmor {

namespace {

using Stamp = CrateReading::Stamp;

/// A source that may have to be read.
struct Candidate {
  Stamp stamp;
  std::function<CrateSource()> read;
};

// Stamps are taken before the reading: what changes meanwhile is read the next time.
Stamp stampOf(const std::filesystem::path& file) {
  std::error_code unreadable;
  return {file, std::filesystem::last_write_time(file, unreadable),
          std::filesystem::file_size(file, unreadable)};
}

std::vector<Candidate> candidates(const CratePlaces& places, ReadingProgress& progress) {
  std::vector<Candidate> all;
  for (const auto& library : places.mixxxLibraries)
    all.push_back({stampOf(library), [library] { return MixxxCrate::read(library); }});
  for (const auto& file : places.collections) {
    all.push_back(
        {stampOf(file), [&progress, file] { return CollectionFile::read(file, progress); }});
  }
  for (const auto& path : places.musicFolders) {
    const auto folder = std::make_shared<MusicFolder>(path);
    all.push_back({{path, {}, folder->state()}, [&progress, folder, cache = places.tagCache] {
                     return folder->read(cache, progress);
                   }});
  }
  return all;
}

} // namespace

std::vector<std::filesystem::path> CratePlaces::files() const {
  auto all = mixxxLibraries;
  all.insert(all.end(), collections.begin(), collections.end());
  return all;
}

CrateReading CrateReading::after(const CrateReading& last, const CratePlaces& places,
                                 ReadingProgress& progress) {
  const auto all = candidates(places, progress);
  CrateReading reading;
  CrateContents::Sources sources;
  bool isNew = !last.contents || all.size() != last.parts.size();
  for (std::size_t index = 0; index < all.size() && !progress.isStopped(); ++index) {
    progress.beginSource(index, all.size());
    const auto& stamp = all[index].stamp;
    const auto known = std::ranges::find(last.parts, stamp, &Part::stamp);
    const bool isKnown = known != last.parts.end();
    isNew = isNew || !isKnown;
    sources.push_back(isKnown ? known->source
                              : std::make_shared<const CrateSource>(all[index].read()));
    reading.parts.push_back({stamp, sources.back()});
  }
  reading.contents =
      isNew ? std::make_shared<const CrateContents>(CrateContents::joined(std::move(sources)))
            : last.contents;
  return reading;
}

} // namespace velmor
