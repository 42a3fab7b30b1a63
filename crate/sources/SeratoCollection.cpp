#include "crate/sources/SeratoCollection.h"

#include "base/Number.h"
#include "base/Text.h"
#include "crate/tracks/CrateDates.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>

namespace velmor {

namespace {

constexpr std::size_t headerLength = 8;
/// A track's record has some hundred bytes.
constexpr std::size_t longestRecord = std::size_t{1} << 20U;

struct Header {
  std::string name;
  std::size_t length = 0;
};

Header headerIn(std::string_view bytes) {
  Header header{.name = std::string(bytes.substr(0, 4))};
  for (const char byte : bytes.substr(4, 4))
    header.length = header.length << 8U | static_cast<unsigned char>(byte);
  return header;
}

std::string textOf(std::string_view bytes) {
  const auto text = text::fromUtf16BigEndian(bytes);
  return std::string(text::trimmed(text::bounded(text)));
}

/// Nothing for a track whose file is gone.
std::optional<CrateTrack> trackIn(std::string_view record) {
  CrateTrack track;
  while (record.size() >= headerLength) {
    const auto [name, length] = headerIn(record);
    if (length > record.size() - headerLength) break;
    const auto value = record.substr(headerLength, length);
    record.remove_prefix(headerLength + length);
    if (name == "pfil") track.file = "/" + textOf(value);
    if (name == "tsng") track.title = textOf(value);
    if (name == "tart") track.artist = textOf(value);
    if (name == "talb") track.album = textOf(value);
    if (name == "tgen") track.genre = textOf(value);
    if (name == "ttyr") track.year = CrateDates::year(textOf(value));
    if (name == "tkey") track.key = MusicalKey::read(textOf(value));
    if (name == "tbpm") track.bpm = std::max(0.0, number::parseDouble(textOf(value)).value_or(0));
    if (name == "bmis" && value == "\1") return std::nullopt;
  }
  return track;
}

std::optional<Header> nextHeader(std::ifstream& file) {
  std::array<char, headerLength> bytes{};
  if (!file.read(bytes.data(), bytes.size())) return std::nullopt;
  return headerIn({bytes.data(), bytes.size()});
}

} // namespace

bool SeratoCollection::isOne(const std::filesystem::path& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return false;
  std::ifstream file(path, std::ios::binary);
  const auto header = nextHeader(file);
  return header && header->name == "vrsn";
}

void SeratoCollection::read(CrateSource& source, ReadingProgress& progress) {
  std::ifstream file(source.place, std::ios::binary);
  std::error_code ignored;
  const auto whole = std::filesystem::file_size(source.place, ignored);
  std::size_t position = 0;
  std::string record;
  while (!progress.isStopped()) {
    const auto header = nextHeader(file);
    if (!header) break;
    position += headerLength + header->length;
    if (header->length > longestRecord || position > whole) {
      source.skipped.push_back({source.place, "not wholly written, or damaged"});
      return;
    }
    record.resize(header->length);
    file.read(record.data(), static_cast<std::streamsize>(record.size()));
    progress.tell(position, whole);
    if (header->name != "otrk") continue;
    if (auto track = trackIn(record)) source.tracks.push_back(std::move(*track));
  }
}

} // namespace velmor
