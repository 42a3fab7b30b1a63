#include "crate/sources/CollectionFile.h"

#include "crate/sources/RekordboxCollection.h"
#include "crate/sources/SeratoCollection.h"
#include "crate/sources/TraktorCollection.h"
#include "crate/sources/VirtualDJCollection.h"
#include "crate/sources/XmlStream.h"
#include "crate/tracks/TrackIdentity.h"

#include <memory>

namespace velmor {

namespace {

/// What reads the elements of a file of this kind; null for another kind.
std::unique_ptr<XmlCollection> readerFor(std::string_view root) {
  if (root == RekordboxCollection::root) return std::make_unique<RekordboxCollection>();
  if (root == TraktorCollection::root) return std::make_unique<TraktorCollection>();
  if (root == VirtualDJCollection::root) return std::make_unique<VirtualDJCollection>();
  return nullptr;
}

void readXml(CrateSource& source, ReadingProgress& progress) {
  XmlStream xml(source.place);
  if (!xml.next()) throw XmlError("empty");
  const auto reader = readerFor(xml.name());
  if (!reader) throw XmlError("a kind of collection that is not known");
  source.name = reader->name();
  const auto take = [&](CrateTrack track) { source.tracks.push_back(std::move(track)); };
  try {
    while (!progress.isStopped() && xml.next()) {
      progress.tell(xml.position(), xml.length());
      reader->element(xml, take);
    }
  } catch (const XmlError&) {
    reader->end(take);
    throw;
  }
  reader->end(take);
}

} // namespace

CrateSource CollectionFile::read(const std::filesystem::path& file, ReadingProgress& progress) {
  CrateSource source{.name = "Collection", .place = file.string()};
  try {
    if (SeratoCollection::isOne(file)) {
      source.name = "Serato";
      SeratoCollection::read(source, progress);
    } else {
      readXml(source, progress);
    }
  } catch (const XmlError& error) {
    source.skipped.push_back({file.string(), error.what()});
  }
  for (auto& track : source.tracks)
    TrackIdentity::complete(track);
  source.tracks.shrink_to_fit();
  return source;
}

} // namespace velmor
