#include "crate/sources/MusicFolder.h"

#include "crate/sources/FileTags.h"
#include "crate/sources/TagCache.h"
#include "crate/tracks/TrackIdentity.h"

#include <algorithm>
#include <functional>

namespace velmor {

MusicFolder::MusicFolder(const std::filesystem::path& theFolder)
    : folder(theFolder), walked{theFolder} {
  using Walk = std::filesystem::recursive_directory_iterator;
  std::error_code failure;
  Walk walk(folder, std::filesystem::directory_options::skip_permission_denied, failure);
  while (!failure && walk != Walk{}) {
    const auto& entry = *walk;
    std::error_code gone;
    if (entry.path().filename().string().starts_with('.')) {
      if (entry.is_directory(gone)) walk.disable_recursion_pending();
    } else if (entry.is_directory(gone)) {
      if (!entry.is_symlink(gone)) walked.push_back(entry.path());
    } else if (FileTags::isMusic(entry.path()) && entry.is_regular_file(gone)) {
      const auto modified = entry.last_write_time(gone).time_since_epoch().count();
      const auto size = entry.file_size(gone);
      if (!gone) {
        files.push_back({entry.path().string(), static_cast<std::int64_t>(modified),
                         static_cast<std::int64_t>(size)});
      }
    }
    walk.increment(failure);
  }
  std::ranges::sort(files, {}, &File::path);
}

std::uintmax_t MusicFolder::state() const {
  std::uintmax_t sum = files.size();
  const auto mix = [&sum](std::uintmax_t value) { sum = (sum ^ value) * 0x100000001B3U; };
  for (const auto& file : files) {
    mix(std::hash<std::string>{}(file.path));
    mix(static_cast<std::uintmax_t>(file.modified));
    mix(static_cast<std::uintmax_t>(file.size));
  }
  return sum;
}

CrateSource MusicFolder::read(const std::filesystem::path& cacheFile,
                              ReadingProgress& progress) const {
  CrateSource source{.name = "Music folder", .place = folder.string()};
  TagCache cache(cacheFile, folder);
  for (std::size_t index = 0; index < files.size() && !progress.isStopped(); ++index) {
    const auto& file = files[index];
    progress.tell(index, files.size());
    auto track = cache.find(file.path, file.modified, file.size);
    if (!track) {
      track = FileTags::read(file.path);
      if (track) cache.put(*track, file.modified, file.size);
    }
    if (!track) {
      source.skipped.push_back({file.path, "not a music file that can be read"});
      continue;
    }
    TrackIdentity::complete(*track);
    source.tracks.push_back(std::move(*track));
  }
  cache.store(progress.isStopped() ? TagCache::Rest::stays : TagCache::Rest::isGone);
  return source;
}

} // namespace velmor
