#include "base/Text.h"

#include "base/Number.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

using namespace velmor;

TEST(Text, TrimsAndLowersAsUnicodeDoes) {
  EXPECT_EQ(text::trimmed("\u00A0\u2003 \t\r\n\u0085Ænima 東京\u3000\u2028"), "Ænima 東京");
  EXPECT_EQ(text::trimmed("\xFF x \xC3"), "\xFF x \xC3");
  EXPECT_EQ(text::lowercased("SIGUR RÓS ÆÞ ΑΣ I"), "sigur rós æþ ας i");
  EXPECT_EQ(text::composed("Sigur Ro\u0301s"), "Sigur Rós");
}

TEST(Text, ReplacesWhatIsNotUtf8) {
  EXPECT_EQ(text::withValidUtf8("a\xFF"
                                "b\xC3"),
            "a\uFFFDb\uFFFD");
  EXPECT_FALSE(text::isValidUtf8("\xED\xA0\x80")); // a lone surrogate
  EXPECT_TRUE(text::isValidUtf8("\xF0\x9F\x8E\xA7"));
}

TEST(Text, KeepsAsManyCharactersAsItMay) {
  const std::pair<std::string, std::string> rows[] = {
      {"abc", "abc"},  {"abcd", "abc"}, {"äöü", "äöü"},
      {"äöüß", "äöü"}, {"🎧🎧🎧🎧", "🎧🎧🎧"}, {std::string(99, '\x80'), std::string(12, '\x80')},
  };
  for (const auto& [whole, kept] : rows)
    EXPECT_EQ(text::bounded(whole, 3), kept) << whole;
}

TEST(Text, SplitsDroppingEmptyPieces) {
  EXPECT_EQ(text::split("a  b ", ' '), (std::vector<std::string_view>{"a", "b"}));
  EXPECT_EQ(text::split("a b  c", ' ', 1), (std::vector<std::string_view>{"a", "b  c"}));
  EXPECT_EQ(text::joined({"a", "a", ""}, ", "), "a, a, ");
  EXPECT_EQ(text::replacingAll("a--b-", "-", "+"), "a++b+");
}

TEST(Number, IsTheSameInEveryLocale) {
  // Where the decimal sign is a comma, as for many of the program's users.
  ASSERT_TRUE(std::setlocale(LC_ALL, "de_DE.UTF-8") || std::setlocale(LC_ALL, "C.UTF-8"));
  EXPECT_EQ(number::formatFixed(127.456, 2), "127.46");
  EXPECT_EQ(number::parseDouble("124.5"), 124.5);
  EXPECT_EQ(number::formatFixed(-std::numeric_limits<double>::max(), 30).size(), 341U);
  for (const auto* text :
       {"", " 1", "1 ", "1,5", "1.5.", "nan", "inf", "1e999", "1e", "+-1", "0x10", "128 BPM"})
    EXPECT_FALSE(number::parseDouble(text)) << text;
  EXPECT_EQ(number::parseDouble("+1.5e2"), 150);
  std::setlocale(LC_ALL, "C");
}

TEST(Number, ParsesWholeIntegersOnly) {
  EXPECT_EQ(number::parseInteger<std::int32_t>("+42"), 42);
  for (const auto* text : {"", "+", "+-1", "1.0", "2147483648", "12a"})
    EXPECT_FALSE(number::parseInteger<std::int32_t>(text)) << text;
}
