#pragma once

#include "platform/linux/accessibility/AtspiNode.h"
#include "platform/linux/bus/SessionBus.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace velmor {

/// What a program's cache says of all its elements, which saves asking each of them.
class AtspiCache {
public:
  /// Asks the program of this name for its cache.
  [[nodiscard]] static BusCall call(const std::string& programName);

  /// Takes the answer, which may be null.
  explicit AtspiCache(const VariantPtr& answer);

  /// Hangs what is below the node into it and gives all nodes below it, parents first; nothing,
  /// with the node as it was, when the cache does not know all of it.
  [[nodiscard]] std::optional<AtspiNodes> attachBelow(const AtspiNodePtr& node) const;

private:
  struct Item {
    AtspiNodePtr node;
    /// The position among its siblings.
    std::int32_t index = 0;
    /// How many children it says it has; less than 0 when it does not say.
    std::int32_t childCount = -1;
  };

  static Item readItem(const VariantPtr& value);
  [[nodiscard]] bool knowsChildren(const AtspiReference& reference) const;

  std::map<AtspiReference, Item> items;
  std::map<AtspiReference, std::vector<AtspiReference>> childrenOf;
};

} // namespace velmor
