#include "StableId.h"

#include <cstdint>
#include <random>

namespace velmor::tools {
namespace {

// std::hash may differ between builds; FNV-1a does not.
uint64_t hashOf(std::string_view prefix, std::string_view seed) {
  uint64_t hash = 14695981039346656037U;
  for (const auto text : {prefix, seed})
    for (const char letter : text)
      hash = (hash ^ static_cast<unsigned char>(letter)) * 1099511628211U;
  return hash;
}

} // namespace

std::string StableId::of(std::string_view prefix, std::string_view seed, size_t digits) {
  constexpr std::string_view hexadecimal = "0123456789abcdef";
  std::mt19937_64 generator(hashOf(prefix, seed));
  std::string id(prefix);
  while (id.size() < prefix.size() + digits)
    id += hexadecimal[generator() % hexadecimal.size()];
  return id;
}

} // namespace velmor::tools
