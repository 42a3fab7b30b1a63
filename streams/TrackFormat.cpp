#include "streams/TrackFormat.h"

#include "base/Number.h"
#include "base/Text.h"
#include "base/VelmorError.h"
#include "model/CamelotKey.h"

#include <algorithm>
#include <array>

namespace velmor {

namespace {

std::string tempo(const NowPlayingTrack& track) {
  if (!(track.bpm > 0)) return "";
  auto digits = number::formatFixed(track.bpm, 1);
  if (digits.ends_with(".0")) digits.resize(digits.size() - 2);
  return digits;
}

struct NamedField {
  std::string_view name;
  std::string (*value)(const NowPlayingTrack&);
};

constexpr std::array<NamedField, 9> fields{{
    {"title", [](const NowPlayingTrack& track) { return track.title; }},
    {"artist", [](const NowPlayingTrack& track) { return track.artist; }},
    {"album", [](const NowPlayingTrack& track) { return track.album; }},
    {"genre", [](const NowPlayingTrack& track) { return track.genre; }},
    {"bpm", tempo},
    {"key", [](const NowPlayingTrack& track) { return track.key; }},
    {"camelot", [](const NowPlayingTrack& track) { return CamelotKey::toCamelot(track.key); }},
    {"source", [](const NowPlayingTrack& track) { return track.source; }},
    {"detection", [](const NowPlayingTrack& track) { return track.detection; }},
}};

const NamedField* fieldNamed(std::string_view name) {
  const auto* const found = std::ranges::find(fields, name, &NamedField::name);
  return found == fields.end() ? nullptr : found;
}

std::string valueOf(const std::string& field, const NowPlayingTrack& track) {
  const auto value = text::printable(fieldNamed(field)->value(track));
  return std::string(text::trimmed(value));
}

void removeBlanksAtEnd(std::string& line) {
  while (line.ends_with(' '))
    line.pop_back();
}

} // namespace

/// Takes the format apart. Brackets that have no partner are text.
class TrackFormat::Reader {
public:
  explicit Reader(std::string_view format) : rest(format) {}

  std::vector<Piece> all() {
    while (!rest.empty())
      next();
    while (!open.empty())
      giveUpBracket();
    return std::move(pieces);
  }

private:
  struct Open {
    char closing;
    std::size_t start;
  };

  void next() {
    const char letter = rest.front();
    const bool isDoubled = rest.size() > 1 && rest[1] == letter;
    if ((letter == '{' || letter == '}') && isDoubled) {
      rest.remove_prefix(1);
      return takeText();
    }
    if (letter == '{') return takeField();
    if (letter == '}') throw VelmorError("The format has a } without a {. Write }} for a brace.");
    if (letter == '[' || letter == '(') {
      open.push_back({letter == '[' ? ']' : ')', pieces.size()});
      return startText();
    }
    const bool closes = !open.empty() && open.back().closing == letter;
    takeText();
    if (closes) closeBracket();
  }

  void startText() {
    pieces.push_back({Piece::Kind::text, std::string(1, rest.front()), {}});
    rest.remove_prefix(1);
  }

  void takeText() {
    const bool continues = !pieces.empty() && pieces.back().kind == Piece::Kind::text;
    if (!continues) return startText();
    pieces.back().text += rest.front();
    rest.remove_prefix(1);
  }

  void takeField() {
    const auto end = rest.find('}');
    if (end == std::string_view::npos)
      throw VelmorError("The format has a { without a }. Write {{ for a brace.");
    const auto name = rest.substr(1, end - 1);
    if (!fieldNamed(name))
      throw VelmorError("The format has no field {" + std::string(name) +
                        "}. There are: " + fieldNames() + ".");
    pieces.push_back({Piece::Kind::field, std::string(name), {}});
    rest.remove_prefix(end + 1);
  }

  void closeBracket() {
    const auto first = pieces.begin() + static_cast<std::ptrdiff_t>(open.back().start);
    open.pop_back();
    Piece brackets{Piece::Kind::brackets, "", {first, pieces.end()}};
    pieces.erase(first, pieces.end());
    pieces.push_back(std::move(brackets));
  }

  void giveUpBracket() { open.pop_back(); }

  std::string_view rest;
  std::vector<Piece> pieces;
  std::vector<Open> open;
};

TrackFormat::TrackFormat(std::string_view format) : pieces(Reader(format).all()) {}

std::string TrackFormat::line(const NowPlayingTrack& track) const {
  std::string line;
  append(line, pieces, track);
  const auto printable = text::printable(line);
  return std::string(text::trimmed(printable));
}

bool TrackFormat::append(std::string& line, const std::vector<Piece>& pieces,
                         const NowPlayingTrack& track) {
  bool isWhole = true;
  for (const auto& piece : pieces) {
    if (piece.kind == Piece::Kind::text) line += piece.text;
    if (piece.kind == Piece::Kind::field) {
      const auto value = valueOf(piece.text, track);
      line += value;
      isWhole = isWhole && !value.empty();
    }
    if (piece.kind == Piece::Kind::brackets) {
      std::string inside;
      if (append(inside, piece.inside, track))
        line += inside;
      else
        removeBlanksAtEnd(line);
    }
  }
  return isWhole;
}

std::string TrackFormat::fieldNames() {
  std::vector<std::string> names;
  for (const auto& field : fields)
    names.emplace_back(field.name);
  return text::joined(names, ", ");
}

} // namespace velmor
