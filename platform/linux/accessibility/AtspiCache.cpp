#include "platform/linux/accessibility/AtspiCache.h"

#include "platform/linux/glib/Variants.h"

#include <algorithm>
#include <set>
#include <utility>

namespace velmor {

namespace {

/// Where the members of an item stand.
enum Member : std::size_t {
  Self = 0,
  Parent = 2,
  Index = 3,
  ChildCount = 4,
  Interfaces = 5,
  Name = 6,
  States = 9,
};

AtspiReference referenceOf(const VariantPtr& pair) {
  return {textOf(memberOf(pair, 0)), textOf(memberOf(pair, 1))};
}

} // namespace

BusCall AtspiCache::call(const std::string& programName) {
  return {programName, "/org/a11y/atspi/cache",     "org.a11y.atspi.Cache", "GetItems",
          nullptr,     "(a((so)(so)(so)iiassusau))"};
}

AtspiCache::AtspiCache(const VariantPtr& answer) {
  for (const auto& value : membersOf(memberOf(answer, 0))) {
    auto item = readItem(value);
    const auto reference = item.node->reference;
    if (!items.emplace(reference, std::move(item)).second) continue;
    childrenOf[referenceOf(memberOf(value, Parent))].push_back(reference);
  }
  for (auto& [parent, children] : childrenOf) {
    std::ranges::stable_sort(children, {},
                             [this](const auto& child) { return items.at(child).index; });
  }
}

AtspiCache::Item AtspiCache::readItem(const VariantPtr& value) {
  auto node = std::make_shared<AtspiNode>();
  node->reference = referenceOf(memberOf(value, Self));
  node->name = textOf(memberOf(value, Name));
  const auto interfaces = valueOf<std::vector<std::string>>(memberOf(value, Interfaces))
                              .value_or(std::vector<std::string>());
  node->mayHoldValue = std::ranges::any_of(interfaces, [](const auto& name) {
    return name == "org.a11y.atspi.Text" || name == "org.a11y.atspi.Value";
  });
  atspi::setStateWords(*node, memberOf(value, States));
  return {std::move(node), valueOf<std::int32_t>(memberOf(value, Index)).value_or(0),
          valueOf<std::int32_t>(memberOf(value, ChildCount)).value_or(-1)};
}

bool AtspiCache::knowsChildren(const AtspiReference& reference) const {
  const auto item = items.find(reference);
  if (item == items.end()) return false;
  const auto children = childrenOf.find(reference);
  const auto known = children == childrenOf.end() ? 0 : children->second.size();
  return item->second.childCount < 0 || static_cast<std::size_t>(item->second.childCount) == known;
}

std::optional<AtspiNodes> AtspiCache::attachBelow(const AtspiNodePtr& node) const {
  AtspiNodes below;
  AtspiNodes pending{node};
  std::set<AtspiReference> seen{node->reference};
  std::vector<std::pair<AtspiNodePtr, AtspiNodes>> families;
  while (!pending.empty()) {
    const auto parent = pending.back();
    pending.pop_back();
    if (!knowsChildren(parent->reference)) return std::nullopt;
    AtspiNodes children;
    if (const auto found = childrenOf.find(parent->reference); found != childrenOf.end()) {
      for (const auto& child : found->second) {
        if (seen.insert(child).second) children.push_back(items.at(child).node);
      }
    }
    below.insert(below.end(), children.begin(), children.end());
    pending.insert(pending.end(), children.begin(), children.end());
    families.emplace_back(parent, std::move(children));
  }
  for (auto& [parent, children] : families) {
    parent->children = std::move(children);
    parent->childrenKnown = true;
  }
  return below;
}

} // namespace velmor
