#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text operations that follow Unicode. Texts are UTF-8; bytes that are not count as U+FFFD.
namespace velmor::text {

/// Without white space and newlines at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// How many characters of a text from outside are kept. No title or name comes near it, and what
/// is done with texts of that length takes no time that anybody notices.
constexpr std::size_t mostCharacters = 10'000;

/// The beginning of the text, with at most so many characters.
[[nodiscard]] std::string_view bounded(std::string_view text, std::size_t most = mostCharacters);

/// In lower case, the same in every locale.
[[nodiscard]] std::string lowercased(std::string_view text);

/// The form in which texts that look the same have the same bytes (composed accents).
[[nodiscard]] std::string composed(std::string_view text);

/// In lower case and without accents ("Sigur Rós" as "sigur ros"), to compare names that people
/// spell in several ways.
[[nodiscard]] std::string folded(std::string_view text);

[[nodiscard]] bool isValidUtf8(std::string_view bytes);

/// The text with every byte sequence that is not UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string withValidUtf8(std::string_view bytes);

/// UTF-16 with the higher byte of each unit first, as UTF-8, up to the first NUL.
[[nodiscard]] std::string fromUtf16BigEndian(std::string_view bytes);

/// The text with a blank for every control character, line feeds included: others' texts could
/// otherwise command a terminal.
[[nodiscard]] std::string printable(std::string_view text);

/// With the letters a to z in upper case and everything else as it is.
[[nodiscard]] std::string asciiUppercased(std::string_view text);

[[nodiscard]] std::string replacingAll(std::string_view text, std::string_view what,
                                       std::string_view with);

[[nodiscard]] std::string joined(const std::vector<std::string>& pieces,
                                 std::string_view separator);

/// The pieces between separators, empty ones dropped. After `mostSplits` pieces the rest, with the
/// separators in it, is the last one.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text, char separator,
                                                  std::size_t mostSplits = std::string_view::npos);

/// With every byte written as %XX that is neither an ASCII letter or digit, one of "-._~", nor in
/// `allowed`.
[[nodiscard]] std::string percentEncoded(std::string_view text, std::string_view allowed);

} // namespace velmor::text
