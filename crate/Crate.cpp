#include "crate/Crate.h"

#include "base/VelmorError.h"
#include "crate/sources/MusicFolder.h"
#include "platform/Clock.h"
#include "platform/async/Waiting.h"

#include <algorithm>
#include <iterator>

namespace velmor {

namespace {

constexpr Seconds betweenTellings{0.25};

// A program that writes its library for minutes makes nobody read it all the time: most of the
// time goes by between two readings.
constexpr Seconds shortestRest{2};
constexpr Seconds longestRest{60};
constexpr double restForReading = 10;

struct Found {
  CrateReading reading;
  std::unique_ptr<FileWatch> watch;
};

WatchedPlaces watchedIn(const CratePlaces& places) {
  WatchedPlaces watched{.files = places.files()};
  for (const auto& place : places.musicFolders) {
    auto folders = MusicFolder(place).folders();
    std::ranges::move(folders, std::back_inserter(watched.folders));
  }
  return watched;
}

} // namespace

Crate::Crate(const Platform& platform, std::function<CratePlaces()> places)
    : clock(platform.clock)
    , loop(platform.mainLoop)
    , watcher(platform.fileWatcher)
    , findPlaces(std::move(places))
    , noticed(std::make_shared<MainLoop::Work>([this] { readSoon(); }))
    , ended(platform.mainLoop)
    , tasks(platform.mainLoop) {}

Crate::~Crate() {
  if (progress) progress->stop();
}

Task<Crate::Contents> Crate::contents() {
  look();
  while (isReading() && known()->tracks.empty())
    co_await ended;
  co_return known();
}

void Crate::look() {
  if (known()->tracks.empty()) start();
}

Crate::Contents Crate::known() const {
  static const auto nothing = std::make_shared<const CrateContents>();
  return isRead() ? last.contents : nothing;
}

void Crate::start() {
  if (isReading()) return;
  progress = std::make_shared<ReadingProgress>();
  isOutdated = false;
  waiting.reset();
  toldProgress = 0;
  telling = loop.callEvery(MainLoop::Lane::Actor, betweenTellings, [this] { tellProgress(); });
  tasks.start(read());
}

Task<void> Crate::read() {
  tell();
  const auto begin = clock.now();
  const auto work = [places = findPlaces, known = last, told = progress, &watch = watcher,
                     &on = loop, notice = std::weak_ptr(noticed)] {
    const auto found = places();
    const auto onChange = [&on, notice] {
      const auto call = [notice] {
        if (const auto read = notice.lock()) (*read)();
      };
      on.post(MainLoop::Lane::Actor, call);
    };
    // Watched before it is read: no change stays unnoticed.
    auto watched = watch.watch(watchedIn(found), onChange);
    return Found{CrateReading::after(known, found, *told), std::move(watched)};
  };
  try {
    auto found = co_await onWorker(loop, work);
    last = std::move(found.reading);
    watch = std::move(found.watch);
  } catch (const std::exception& error) {
    // What was known before is better than nothing.
    CrateContents nothing;
    nothing.skipped.push_back({"", messageOf(error)});
    if (!isRead()) last.contents = std::make_shared<const CrateContents>(std::move(nothing));
  }
  rest = std::clamp(restForReading * Seconds(clock.now() - begin), shortestRest, longestRest);
  progress.reset();
  telling.reset();
  if (isOutdated) readSoon();
  ended.open();
  tell();
}

void Crate::tell() const {
  if (changed) changed();
}

void Crate::tellProgress() {
  if (progressOfReading() == toldProgress) return;
  toldProgress = progressOfReading();
  tell();
}

void Crate::readSoon() {
  isOutdated = true;
  if (isReading() || waiting) return;
  waiting = loop.callLater(MainLoop::Lane::Actor, rest, [this] { start(); });
}

} // namespace velmor
