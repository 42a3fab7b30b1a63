#include "platform/linux/system/Syslog.h"

#include "platform/Environment.h"

#include <syslog.h>
#include <unistd.h>

#include <string>

namespace velmor {

namespace {

/// True for a byte of a control character, U+0080 to U+009F in UTF-8 included.
bool belongsToControl(std::string_view text, std::size_t position) {
  const auto byte = static_cast<unsigned char>(text[position]);
  if (byte < 0x20 || byte == 0x7f) return true;
  const auto isC1 = [&](std::size_t start) {
    return start + 1 < text.size() && text[start] == '\xc2' &&
           static_cast<unsigned char>(text[start + 1]) < 0xa0;
  };
  return isC1(position) || (position > 0 && isC1(position - 1));
}

/// In one line, without anything that a terminal would obey.
std::string printable(std::string_view line) {
  std::string text(line);
  for (std::size_t position = 0; position < line.size(); ++position) {
    if (belongsToControl(line, position)) text[position] = ' ';
  }
  return text;
}

} // namespace

Syslog::Syslog(const Environment& environment)
    : copiesToStandardError(::isatty(STDERR_FILENO) == 1 ||
                            environment.variable("VELMOR_LOG_STDERR").has_value()) {
  ::openlog("velmor", LOG_PID, LOG_USER);
}

Syslog::~Syslog() {
  ::closelog();
}

void Syslog::write(std::string_view line) {
  auto text = printable(line);
  ::syslog(LOG_NOTICE, "%s", text.c_str());
  if (!copiesToStandardError) return;
  text += '\n';
  // One call, so that lines of several threads do not mix. A log that cannot be written to has
  // nobody to tell.
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace velmor
