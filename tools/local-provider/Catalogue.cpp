#include "Catalogue.h"

#include "CamelotCode.h"
#include "CatalogueError.h"
#include "Genre.h"
#include "Text.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <set>
#include <string>

namespace velmor::tools {
namespace {

using nlohmann::json;

void demand(bool condition, const std::string& message) {
  if (!condition) throw CatalogueError(message);
}

Song songFrom(const json& entry) {
  return {entry.at("song").get<std::string>(),  entry.at("artist").get<std::string>(),
          entry.at("album").get<std::string>(), entry.at("bpm").get<double>(),
          entry.at("key").get<std::string>(),   entry.at("genre").get<std::string>(),
          entry.at("energy").get<int>()};
}

void check(const Song& song) {
  demand(!trimmed(song.song).empty(), "a song without a title");
  demand(!trimmed(song.artist).empty(), song.song + ": no artist");
  demand(song.bpm >= 60 && song.bpm <= 200, song.song + ": tempo out of range");
  const auto key = CamelotCode::read(song.key);
  demand(key && key->text() == song.key, song.song + ": not a Camelot code: " + song.key);
  const auto genre = Genre::read(song.genre);
  demand(genre && genre->name() == song.genre, song.song + ": unknown genre: " + song.genre);
  demand(song.energy >= 0 && song.energy <= 100, song.song + ": energy out of range");
}

} // namespace

std::vector<Song> Catalogue::read(std::istream& input) try {
  std::vector<Song> songs;
  std::set<std::string> names;
  for (const auto& entry : json::parse(input)) {
    songs.push_back(songFrom(entry));
    const auto& song = songs.back();
    check(song);
    demand(names.insert(folded(song.artist) + '\n' + folded(song.song)).second,
           song.song + ": stands in the catalogue twice");
  }
  return songs;
} catch (const json::exception& error) {
  throw CatalogueError(error.what());
}

std::vector<Song> Catalogue::load(const std::filesystem::path& file) {
  std::ifstream input(file);
  demand(input.is_open(), "cannot open the catalogue " + file.string());
  return read(input);
}

} // namespace velmor::tools
