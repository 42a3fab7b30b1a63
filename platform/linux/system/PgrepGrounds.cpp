#include "platform/linux/system/AnswerGrounds.h"
#include "platform/linux/system/ProcessTable.h"

#include <algorithm>
#include <string_view>

namespace velmor {

namespace {

constexpr std::size_t longestUncutName = 14;

bool isAsciiLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSame(std::string_view one, std::string_view other) {
  return std::ranges::equal(one, other, {}, lower, lower);
}

/// Whether the pattern means only itself to pgrep.
bool isPlain(std::string_view pattern) {
  return !pattern.empty() && pattern.size() <= longestUncutName &&
         std::ranges::all_of(
             pattern, [](char c) { return isAsciiLetterOrDigit(c) || c == ' ' || c == '_'; });
}

bool isUnusual(char c) {
  return c < ' ' || c > '~';
}

/// Whether a name might match by bytes outside printable ASCII: upper and lower case of a few
/// letters lie on both sides, and control characters are printed in ways of their own. Each run of
/// such bytes is taken to stand for anything.
bool mightMatch(std::string_view name, std::string_view pattern) {
  const auto first = std::ranges::find_if(name, isUnusual);
  if (first == name.end()) return false;
  const auto last = std::find_if(name.rbegin(), name.rend(), isUnusual).base();
  const std::string_view head(name.begin(), first);
  const std::string_view tail(last, name.end());
  return head.size() + tail.size() <= pattern.size() &&
         isSame(head, pattern.substr(0, head.size())) &&
         isSame(tail, pattern.substr(pattern.size() - tail.size()));
}

} // namespace

std::optional<AnswerGrounds> pgrepGrounds(const ChildProcess& child, ProcessTable& table) {
  if (child.executable != "/usr/bin/pgrep" || child.arguments.size() != 2) return std::nullopt;
  const std::string_view pattern = child.arguments[1];
  if (child.arguments[0] != "-xi" || !isPlain(pattern)) return std::nullopt;
  const auto processes = table.names();
  if (!processes) return std::nullopt;

  std::string matching;
  std::string numbers;
  for (const auto& [number, name] : *processes) {
    if (mightMatch(name, pattern)) return std::nullopt;
    if (!isSame(name, pattern)) continue;
    const auto start = startOfProcess(number);
    if (!start || start->name != name) return std::nullopt;
    matching += describe(number, *start);
    numbers += std::to_string(number) + '\n';
  }
  return AnswerGrounds{.text = std::move(matching), .lead = [numbers](const ChildResult& result) {
                         return result.output == numbers && result.errorOutput.empty() &&
                                result.exitStatus == (numbers.empty() ? 1 : 0);
                       }};
}

} // namespace velmor
