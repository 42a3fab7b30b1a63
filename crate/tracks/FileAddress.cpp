#include "crate/tracks/FileAddress.h"

#include "base/Number.h"
#include "base/Text.h"

#include <cctype>

namespace velmor {

namespace {

std::string percentDecoded(std::string_view text) {
  const auto isHex = [&](std::size_t at) {
    return at < text.size() && std::isxdigit(static_cast<unsigned char>(text[at])) != 0;
  };
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '%' && isHex(at + 1) && isHex(at + 2)) {
      result += static_cast<char>(std::stoi(std::string(text.substr(at + 1, 2)), nullptr, 16));
      at += 2;
    } else {
      result += text[at];
    }
  }
  return result;
}

} // namespace

std::string FileAddress::of(const std::filesystem::path& file) {
  return file.is_absolute() ? "file://" + text::percentEncoded(file.string(), "/") : "";
}

std::string FileAddress::path(std::string_view address) {
  constexpr std::string_view scheme = "file://";
  if (!address.starts_with(scheme)) return "";
  const auto slash = address.find('/', scheme.size());
  if (slash == std::string_view::npos) return "";
  auto path = percentDecoded(address.substr(slash));
  const bool hasDrive = path.size() > 2 && path[2] == ':';
  return hasDrive ? path.substr(1) : path;
}

} // namespace velmor
