#include "ui/PageMessage.h"

#include "base/Json.h"
#include "base/Number.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

namespace velmor {

using Json = nlohmann::json;

namespace {

constexpr auto none = std::string_view::npos;
constexpr auto digits = "0123456789";

/// The digits and signs of a number that JSON allows, but that is too large for a double.
bool isNumberOutOfRange(std::string_view token) {
  if (number::parseDouble(token)) return false;
  const auto take = [&](std::string_view any) {
    const bool taken = !token.empty() && any.find(token.front()) != none;
    if (taken) token.remove_prefix(1);
    return taken;
  };
  const auto takeDigits = [&] {
    const bool taken = take(digits);
    token.remove_prefix(std::min(token.find_first_not_of(digits), token.size()));
    return taken;
  };
  take("-");
  if (!takeDigits()) return false;
  if (take(".") && !takeDigits()) return false;
  if (take("eE")) {
    take("+-");
    if (!takeDigits()) return false;
  }
  return token.empty();
}

/// The UTF-16 unit of an escape such as \ud83d at the beginning of the text; nothing for any other.
std::optional<std::uint32_t> escapedUnit(std::string_view text) {
  constexpr std::size_t length = 6;
  if (text.size() < length || !text.starts_with("\\u")) return std::nullopt;
  std::uint32_t unit = 0;
  const auto* const end = text.data() + length;
  const auto [stop, failure] = std::from_chars(text.data() + 2, end, unit, 16);
  return failure == std::errc{} && stop == end ? std::optional(unit) : std::nullopt;
}

/// Whether an escape in the text stands for one half of a character without the other.
bool hasHalfCharacter(std::string_view text) {
  constexpr std::size_t length = 6;
  for (auto at = text.find('\\'); at != none; at = text.find('\\', at)) {
    const auto unit = escapedUnit(text.substr(at));
    at += unit ? length : 2;
    if (!unit || *unit < 0xD800 || *unit > 0xDFFF) continue;
    const auto second = at < text.size() ? escapedUnit(text.substr(at)) : std::nullopt;
    if (*unit >= 0xDC00 || !second || *second < 0xDC00 || *second > 0xDFFF) return true;
    at += length;
  }
  return false;
}

/// Copies a JSON text with null in place of each value that could not be held. What is not JSON
/// stays that.
class Sieve {
public:
  explicit Sieve(std::string_view body) : rest(body) {}

  [[nodiscard]] std::string sifted();

private:
  void copyText();
  void copyNumber();
  void open();
  void close();
  /// Moves so much of the text over, unless it lies too deep.
  void copy(std::size_t length) { put(take(length)); }
  std::string_view take(std::size_t length);
  void put(std::string_view text);

  std::string_view rest;
  std::string result;
  int depth = 0;
};

std::string Sieve::sifted() {
  while (!rest.empty()) {
    switch (rest.front()) {
    case '"':
      copyText();
      break;
    case '[':
    case '{':
      open();
      break;
    case ']':
    case '}':
      close();
      break;
    default:
      if (std::string_view("-0123456789").find(rest.front()) != none)
        copyNumber();
      else
        copy(1);
    }
  }
  return std::move(result);
}

void Sieve::copyText() {
  auto end = rest.find_first_of("\"\\", 1);
  while (end != none && rest[end] == '\\')
    end = rest.find_first_of("\"\\", end + 2);
  const auto text = take(end == none ? rest.size() : end + 1);
  if (!hasHalfCharacter(text)) {
    put(text);
    return;
  }
  const auto next = rest.find_first_not_of(" \t\r\n");
  const bool isKey = next != none && rest[next] == ':';
  // An unknown key is ignored and an unknown method is named; neither is lost by the sign.
  constexpr int levelOfMethod = 1;
  put(isKey || depth == levelOfMethod ? "\"\\ufffd\"" : "null");
}

void Sieve::copyNumber() {
  const auto number = take(std::min(rest.find_first_not_of("0123456789+-.eE"), rest.size()));
  put(isNumberOutOfRange(number) ? "null" : number);
}

void Sieve::open() {
  if (depth == PageMessage::depthLimit) put("null");
  ++depth;
  copy(1);
}

void Sieve::close() {
  copy(1);
  --depth;
}

std::string_view Sieve::take(std::size_t length) {
  const auto taken = rest.substr(0, length);
  rest.remove_prefix(taken.size());
  return taken;
}

void Sieve::put(std::string_view text) {
  if (depth <= PageMessage::depthLimit) result += text;
}

} // namespace

std::optional<PageMessage> PageMessage::read(std::string_view body) {
  Json message;
  try {
    message = JsonDecoder::parse(Sieve(body).sifted());
  } catch (const DecodingError&) {
    return std::nullopt;
  }
  if (!message.is_object()) return std::nullopt;
  const auto id = message.find("id");
  const auto method = message.find("method");
  if (id == message.end() || !id->is_string()) return std::nullopt;
  if (method == message.end() || !method->is_string()) return std::nullopt;
  const auto args = message.find("args");
  const bool given = args != message.end() && args->is_array();
  return PageMessage{id->get<std::string>(), method->get<std::string>(),
                     given ? std::move(*args) : Json::array()};
}

} // namespace velmor
