#pragma once

#include "platform/linux/accessibility/AtspiNode.h"

#include <optional>
#include <set>

namespace velmor {

class AtspiConversation;

/// Reads what a program shows, with as few round trips as it allows. The conversation must outlive
/// it. A node that the program does not tell about stays as it is.
class AtspiTree {
public:
  explicit AtspiTree(AtspiConversation& programConversation);

  /// The program's windows, without what is in them; nothing when the program does not answer.
  [[nodiscard]] std::optional<AtspiNodes> windows();

  /// Reads everything below the node into it; false when the program does not answer.
  bool readBelow(const AtspiNodePtr& node);

  /// Reads the text or number that each of the nodes holds.
  void readValues(const AtspiNodes& nodes);

private:
  bool readFromCache(const AtspiNodePtr& node);
  void readByWalking(const AtspiNodePtr& node);
  void readFrames(const AtspiNodes& nodes);
  void readDetails(const AtspiNodes& nodes);
  [[nodiscard]] AtspiNodes readLevel(const AtspiNodes& parents, std::set<AtspiReference>& seen);

  AtspiConversation& conversation;
};

} // namespace velmor
