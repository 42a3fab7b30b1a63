#include "nowplaying/PercentEncoding.h"

namespace velmor {

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

} // namespace velmor
