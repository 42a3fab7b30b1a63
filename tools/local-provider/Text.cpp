#include "Text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>

namespace velmor::tools {
namespace {

icu::UnicodeString trimmedUnicode(std::string_view text) {
  auto unicode = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  int32_t begin = 0;
  int32_t end = unicode.length();
  // All white space of Unicode lies in the basic plane: one code unit each.
  while (begin < end && u_isUWhiteSpace(unicode.charAt(begin)))
    ++begin;
  while (end > begin && u_isUWhiteSpace(unicode.charAt(end - 1)))
    --end;
  return icu::UnicodeString(unicode, begin, end - begin);
}

std::string utf8(const icu::UnicodeString& unicode) {
  std::string text;
  unicode.toUTF8String(text);
  return text;
}

} // namespace

std::string trimmed(std::string_view text) {
  return utf8(trimmedUnicode(text));
}

std::string folded(std::string_view text) {
  const auto unicode = trimmedUnicode(text);
  UErrorCode status = U_ZERO_ERROR;
  const auto* normalizer = icu::Normalizer2::getNFKCCasefoldInstance(status);
  if (U_FAILURE(status)) return utf8(unicode);
  const auto normalized = normalizer->normalize(unicode, status);
  return utf8(U_FAILURE(status) ? unicode : normalized);
}

std::string foldedBaseTitle(std::string_view title) {
  constexpr std::array<std::string_view, 3> marks{" (", " [", " - "};
  const auto whole = folded(title);
  auto end = whole.size();
  for (const auto mark : marks)
    end = std::min(end, whole.find(mark));
  return trimmed(std::string_view(whole).substr(0, end));
}

} // namespace velmor::tools
