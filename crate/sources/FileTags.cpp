#include "crate/sources/FileTags.h"

#include "base/Number.h"
#include "base/Text.h"
#include "crate/tracks/CrateDates.h"

#include <fileref.h>
#include <mp4file.h>
#include <tfilestream.h>
#include <tpropertymap.h>

#include <algorithm>
#include <array>
#include <initializer_list>

namespace velmor {

namespace {

constexpr double highestTempo = 1000;

std::string plain(const TagLib::String& given) {
  return std::string(text::trimmed(text::withValidUtf8(given.to8Bit(true))));
}

/// The first value of the first tag that has one.
std::string first(const TagLib::PropertyMap& tags, std::initializer_list<const char*> names) {
  for (const auto* const name : names) {
    const auto found = tags.find(name);
    if (found == tags.end() || found->second.isEmpty()) continue;
    if (auto value = plain(found->second.front()); !value.empty()) return value;
  }
  return "";
}

/// The same of the tags of an m4a file that DJ tools add to it, which are in no property map.
std::string firstItem(const TagLib::MP4::File& file, std::initializer_list<const char*> names) {
  const auto& items = file.tag()->itemMap();
  for (const auto* const name : names) {
    const auto found = items.find(std::string("----:com.apple.iTunes:") + name);
    if (found == items.end()) continue;
    const auto values = found->second.toStringList();
    if (!values.isEmpty()) return plain(values.front());
  }
  return "";
}

double tempoOf(const std::string& text) {
  const auto value = number::parseDouble(text::replacingAll(text, ",", ".")).value_or(0);
  return value > 0 && value < highestTempo ? value : 0;
}

int energyOf(const std::string& text) {
  const int value = number::parseInteger<int>(text).value_or(0);
  return value >= 1 && value <= 10 ? value : 0;
}

} // namespace

bool FileTags::isMusic(const std::filesystem::path& file) {
  constexpr std::array<std::string_view, 9> kinds{".mp3",  ".flac", ".m4a",  ".ogg", ".oga",
                                                  ".opus", ".wav",  ".aiff", ".aif"};
  const auto kind = text::lowercased(file.extension().string());
  return std::ranges::find(kinds, kind) != kinds.end();
}

std::optional<CrateTrack> FileTags::read(const std::filesystem::path& path) {
  // Opened for writing, as TagLib does by itself, a file would seem to have been changed.
  TagLib::FileStream stream(path.c_str(), true);
  if (!stream.isOpen()) return std::nullopt;
  const TagLib::FileRef file(&stream, false);
  if (file.isNull() || !file.file()->isValid() || file.file()->length() == 0) return std::nullopt;
  const auto tags = file.file()->properties();
  CrateTrack track{.title = first(tags, {"TITLE"}),
                   .artist = first(tags, {"ARTIST", "ALBUMARTIST"}),
                   .album = first(tags, {"ALBUM"}),
                   .genre = first(tags, {"GENRE"}),
                   .file = path.string()};
  auto tempo = first(tags, {"BPM", "TEMPO"});
  auto key = first(tags, {"INITIALKEY", "KEY"});
  if (const auto* const mp4 = dynamic_cast<const TagLib::MP4::File*>(file.file());
      mp4 && mp4->tag()) {
    // The tempo that the format itself has is a whole number.
    if (auto exact = firstItem(*mp4, {"BPM"}); !exact.empty()) tempo = std::move(exact);
    if (auto added = firstItem(*mp4, {"initialkey", "KEY"}); !added.empty()) key = std::move(added);
  }
  track.bpm = tempoOf(tempo);
  track.key = MusicalKey::read(key);
  track.energy = energyOf(first(tags, {"ENERGYLEVEL"}));
  track.year = CrateDates::year(first(tags, {"DATE"}));
  if (track.title.empty()) track.title = text::withValidUtf8(path.stem().string());
  return track;
}

} // namespace velmor
