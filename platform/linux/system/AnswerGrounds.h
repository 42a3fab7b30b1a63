#pragma once

#include "platform/ProcessLauncher.h"

#include <functional>
#include <optional>
#include <string>

namespace velmor {

class ProcessTable;

/// What a child program's answer depends on, learnt without starting it.
struct AnswerGrounds {
  /// As long as this text stays the same, so does the program's answer.
  std::string text;
  /// Whether the program's answer is the one that these grounds give. It is not when something
  /// changed before the program looked, or when the program sees things another way than we do;
  /// then its answer must not be remembered.
  std::function<bool(const ChildResult&)> lead;
};

// Each gives nothing for another program or other arguments, and whenever it is in doubt.

/// `pgrep -xi NAME`: the processes that bear the name. In doubt about a name that is not made of
/// letters, digits, spaces and "_" alone, which may mean more than itself, about one of 15 bytes
/// or more, where the kernel cuts, and about processes whose names might match by letters outside
/// ASCII.
[[nodiscard]] std::optional<AnswerGrounds> pgrepGrounds(const ChildProcess& child,
                                                        ProcessTable& table);

/// `lsof -nP -iTCP -sTCP:LISTEN -a -p NUMBERS`: the listening sockets that these processes hold. In
/// doubt when one of them has ended or is not ours to look into.
[[nodiscard]] std::optional<AnswerGrounds> lsofGrounds(const ChildProcess& child);

/// `which NAME`: the folders of PATH that have such a program. In doubt about a path or an option
/// for a name, and about a PATH with folders that are not absolute.
[[nodiscard]] std::optional<AnswerGrounds> whichGrounds(const ChildProcess& child);

} // namespace velmor
