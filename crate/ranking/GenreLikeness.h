#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velmor {

/// How much the genres of other tracks are like that of one. Genres are free text, with several in
/// one ("Tech House; Techno"): words in common count, and so do genres that DJs mix with one
/// another. Remembers what it was asked. One thread.
class GenreLikeness {
public:
  explicit GenreLikeness(std::string_view genre);

  /// 1 for the same genre, 0 for one that has nothing to do with it. Not for an empty text.
  [[nodiscard]] double to(const std::string& genre);

private:
  std::vector<std::string> words;
  std::unordered_map<std::string, double> known;
};

} // namespace velmor
