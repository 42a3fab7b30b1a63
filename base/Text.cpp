#include "base/Text.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace velmor::text {

namespace {

const std::uint8_t* bytesOf(std::string_view text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}

icu::StringPiece piece(std::string_view text) {
  return {text.data(), static_cast<std::int32_t>(text.size())};
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  text.toUTF8String(result);
  return result;
}

} // namespace

std::string fromUtf16BigEndian(std::string_view bytes) {
  icu::UnicodeString units;
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    const auto high = static_cast<unsigned char>(bytes[at]);
    const auto unit = static_cast<char16_t>(high << 8U | static_cast<unsigned char>(bytes[at + 1]));
    if (unit == 0) break;
    units.append(unit);
  }
  return utf8(units);
}

std::string_view trimmed(std::string_view text) {
  const auto* bytes = bytesOf(text);
  const auto length = static_cast<std::int32_t>(text.size());
  std::int32_t start = 0;
  while (start < length) {
    std::int32_t next = start;
    UChar32 character = 0;
    U8_NEXT(bytes, next, length, character);
    if (character < 0 || !u_isUWhiteSpace(character)) break;
    start = next;
  }
  std::int32_t end = length;
  while (end > start) {
    std::int32_t previous = end;
    UChar32 character = 0;
    U8_PREV(bytes, start, previous, character);
    if (character < 0 || !u_isUWhiteSpace(character)) break;
    end = previous;
  }
  return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

std::string_view bounded(std::string_view text, std::size_t most) {
  if (text.size() <= most) return text;
  const auto continues = [&](std::size_t position) {
    return (static_cast<unsigned char>(text[position]) & 0xC0U) == 0x80U;
  };
  std::size_t characters = 0;
  for (std::size_t position = 0; position < text.size(); ++position) {
    if (!continues(position) && ++characters > most) return text.substr(0, position);
    // Bytes that are no UTF-8 may continue for ever without beginning a character.
    if (position >= 4 * most) return text.substr(0, position);
  }
  return text;
}

std::string lowercased(std::string_view text) {
  return utf8(icu::UnicodeString::fromUTF8(piece(text)).toLower(icu::Locale::getRoot()));
}

std::string composed(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return std::string(text);
  const auto result = normalizer->normalize(icu::UnicodeString::fromUTF8(piece(text)), status);
  return U_FAILURE(status) ? std::string(text) : utf8(result);
}

std::string folded(std::string_view text) {
  const auto isAscii = [](char character) { return static_cast<unsigned char>(character) < 0x80; };
  if (std::ranges::all_of(text, isAscii)) {
    std::string lower(text);
    for (char& letter : lower) {
      if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return lower;
  }
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFKDInstance(status);
  if (U_FAILURE(status)) return lowercased(text);
  const auto letters =
      normalizer->normalize(icu::UnicodeString::fromUTF8(piece(text)).foldCase(), status);
  icu::UnicodeString result;
  for (std::int32_t position = 0; position < letters.length();
       position = letters.moveIndex32(position, 1)) {
    const UChar32 letter = letters.char32At(position);
    if (u_charType(letter) != U_NON_SPACING_MARK) result.append(letter);
  }
  // Letters that are no accented forms of others, but are often typed as such.
  constexpr std::array<std::pair<const char16_t*, const char16_t*>, 6> alike{
      {{u"ø", u"o"}, {u"ł", u"l"}, {u"đ", u"d"}, {u"æ", u"ae"}, {u"œ", u"oe"}, {u"ı", u"i"}}};
  for (const auto& [special, plain] : alike)
    result.findAndReplace(special, plain);
  return utf8(result);
}

bool isValidUtf8(std::string_view bytes) {
  const auto length = static_cast<std::int32_t>(bytes.size());
  std::int32_t position = 0;
  while (position < length) {
    UChar32 character = 0;
    U8_NEXT(bytesOf(bytes), position, length, character);
    if (character < 0) return false;
  }
  return true;
}

std::string withValidUtf8(std::string_view bytes) {
  if (isValidUtf8(bytes)) return std::string(bytes);
  return utf8(icu::UnicodeString::fromUTF8(piece(bytes)));
}

std::string asciiUppercased(std::string_view text) {
  std::string result(text);
  for (char& letter : result) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return result;
}

std::string replacingAll(std::string_view text, std::string_view what, std::string_view with) {
  std::string result;
  std::size_t position = 0;
  for (auto found = text.find(what); found != std::string_view::npos;
       found = text.find(what, position)) {
    result += text.substr(position, found - position);
    result += with;
    position = found + what.size();
  }
  result += text.substr(position);
  return result;
}

std::string joined(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string result;
  for (const auto& piece : pieces) {
    if (&piece != &pieces.front()) result += separator;
    result += piece;
  }
  return result;
}

std::vector<std::string_view> split(std::string_view text, char separator, std::size_t mostSplits) {
  std::vector<std::string_view> pieces;
  std::size_t start = 0;
  while (start <= text.size()) {
    const bool isRest = pieces.size() >= mostSplits;
    const auto end = isRest ? text.size() : std::min(text.find(separator, start), text.size());
    if (end > start) pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return pieces;
}

std::string percentEncoded(std::string_view text, std::string_view allowed) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  constexpr std::string_view unreserved = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                          "0123456789-._~";
  std::string encoded;
  for (const char character : text) {
    if (unreserved.find(character) != std::string_view::npos ||
        allowed.find(character) != std::string_view::npos) {
      encoded += character;
      continue;
    }
    const auto byte = static_cast<unsigned char>(character);
    encoded += '%';
    encoded += digits[byte >> 4U];
    encoded += digits[byte & 0xFU];
  }
  return encoded;
}

std::string printable(std::string_view given) {
  auto result = withValidUtf8(given);
  for (char& character : result) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20 || code == 0x7F) character = ' ';
  }
  // The second set of control characters, U+0080 to U+009F, takes two bytes.
  for (std::size_t position = 0; position + 1 < result.size(); ++position) {
    const auto next = static_cast<unsigned char>(result[position + 1]);
    if (result[position] == '\xC2' && next < 0xA0) result.replace(position, 2, " ");
  }
  return result;
}

} // namespace velmor::text
