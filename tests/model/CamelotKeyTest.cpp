#include "model/CamelotKey.h"

#include <gtest/gtest.h>

#include <utility>

using velmor::CamelotKey;

TEST(CamelotKey, ReadsEverySpellingAndLeavesTheRest) {
  const std::pair<const char*, const char*> cases[] = {
      // Short forms, words, signs and dashes.
      {"a minor", "8A"},
      {"A-minor", "8A"},
      {"A–minor", "8A"},
      {"F♯m", "11A"},
      {"Gbm", "11A"},
      {"Ebm", "2A"},
      {"C maj", "8B"},
      {"EbM", "5B"},
      {"E♭ major", "5B"},
      {"Bb Major", "6B"},
      {" C# minor\n", "12A"},
      {"Cb major", "1B"},
      // Already there.
      {"8a", "8A"},
      {" 12 b ", "12B"},
      // Not readable: as given, trimmed.
      {"C", "C"},
      {"Db", "Db"},
      {"Cmaj", "Cmaj"},
      {"Dmin", "Dmin"},
      {"AB minor", "AB minor"},
      {"Cb minor", "Cb minor"},
      {"08A", "08A"},
      {"13A", "13A"},
      {" - ", "-"},
      {" \t\n", ""},
  };
  for (const auto& [given, expected] : cases)
    EXPECT_EQ(CamelotKey::toCamelot(given), expected);
}

TEST(CamelotKey, KnowsAll24Keys) {
  const char* minors[] = {"G#", "D#", "A#", "F", "C", "G", "D", "A", "E", "B", "F#", "C#"};
  const char* majors[] = {"B", "F#", "C#", "G#", "D#", "A#", "F", "C", "G", "D", "A", "E"};
  for (int number = 1; number <= 12; ++number) {
    const auto code = std::to_string(number);
    EXPECT_EQ(CamelotKey::toCamelot(std::string(minors[number - 1]) + " minor"), code + "A");
    EXPECT_EQ(CamelotKey::toCamelot(std::string(majors[number - 1]) + " major"), code + "B");
  }
}
