#include "platform/linux/accessibility/AtspiTree.h"

#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/glib/Variants.h"

#include <glib.h>

#include <algorithm>
#include <set>

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

bool holdsText(const VariantPtr& texts, std::string_view wanted) {
  for (std::size_t index = 0; index < sizeOf(texts); ++index) {
    if (textOf(memberOf(texts, index)) == wanted) return true;
  }
  return false;
}

} // namespace

BusCall AtspiCache::call(const std::string& programName) {
  return {programName, "/org/a11y/atspi/cache",     "org.a11y.atspi.Cache", "GetItems",
          nullptr,     "(a((so)(so)(so)iiassusau))"};
}

AtspiCache::AtspiCache(const VariantPtr& answer) {
  const auto array = answer ? memberOf(answer, 0) : nullptr;
  for (std::size_t position = 0; position < sizeOf(array); ++position) {
    const auto value = memberOf(array, position);
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
  const auto interfaces = memberOf(value, Interfaces);
  node->mayHoldValue =
      holdsText(interfaces, "org.a11y.atspi.Text") || holdsText(interfaces, "org.a11y.atspi.Value");
  atspi::setStateWords(*node, memberOf(value, States));
  return {std::move(node), g_variant_get_int32(memberOf(value, Index).get()),
          g_variant_get_int32(memberOf(value, ChildCount).get())};
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

namespace {

/// A program that offers more, as a long list does, is not read to its end.
constexpr std::size_t nodeLimit = 20'000;

constexpr auto rootPath = "/org/a11y/atspi/accessible/root";

/// What may be called by the value it holds, having no name.
AtspiNodes unnamedAmong(const AtspiNodes& nodes) {
  AtspiNodes unnamed;
  for (const auto& node : nodes) {
    if (node->name.empty() && node->mayHoldValue) unnamed.push_back(node);
  }
  return unnamed;
}

} // namespace

AtspiTree::AtspiTree(AtspiConversation& programConversation) : conversation(programConversation) {}

std::optional<AtspiNodes> AtspiTree::windows() {
  const auto answer = conversation.ask(atspi::childrenCall({conversation.program(), rootPath}));
  if (!answer) return std::nullopt;
  auto nodes = atspi::children(answer);
  readDetails(nodes);
  return nodes;
}

bool AtspiTree::readBelow(const AtspiNodePtr& node) {
  if (!readFromCache(node)) readByWalking(node);
  return !conversation.isOver();
}

bool AtspiTree::readFromCache(const AtspiNodePtr& node) {
  const AtspiCache cache(conversation.ask(AtspiCache::call(conversation.program())));
  const auto below = cache.attachBelow(node);
  if (!below) return false;
  readFrames(*below);
  readValues(unnamedAmong(*below));
  return true;
}

void AtspiTree::readByWalking(const AtspiNodePtr& node) {
  AtspiNodes below;
  // A tree that loops back must not be walked for ever.
  std::set<AtspiReference> seen{node->reference};
  AtspiNodes parents{node};
  while (!parents.empty() && below.size() < nodeLimit) {
    parents = readLevel(parents, seen);
    below.insert(below.end(), parents.begin(), parents.end());
  }
  for (const auto& child : below)
    child->childrenKnown = true;
  readValues(unnamedAmong(below));
}

/// Reads the children of all these nodes, with their details, in two round trips.
AtspiNodes AtspiTree::readLevel(const AtspiNodes& parents, std::set<AtspiReference>& seen) {
  std::vector<BusCall> calls;
  for (const auto& parent : parents)
    calls.push_back(atspi::childrenCall(parent->reference));
  const auto answers = conversation.exchange(std::move(calls));
  AtspiNodes level;
  for (std::size_t index = 0; index < parents.size(); ++index) {
    auto& parent = *parents[index];
    parent.children = atspi::children(answers[index]);
    std::erase_if(parent.children,
                  [&](const auto& child) { return !seen.insert(child->reference).second; });
    parent.childrenKnown = true;
    level.insert(level.end(), parent.children.begin(), parent.children.end());
  }
  readDetails(level);
  return level;
}

void AtspiTree::readDetails(const AtspiNodes& nodes) {
  std::vector<BusCall> calls;
  for (const auto& node : nodes) {
    for (auto& call : atspi::detailCalls(node->reference))
      calls.push_back(std::move(call));
  }
  const auto answers = conversation.exchange(std::move(calls));
  auto answer = answers.begin();
  for (const auto& node : nodes) {
    atspi::setName(*node, *answer++);
    atspi::setState(*node, *answer++);
    atspi::setFrame(*node, *answer++);
  }
}

void AtspiTree::readFrames(const AtspiNodes& nodes) {
  AtspiNodes seen;
  std::vector<BusCall> calls;
  for (const auto& node : nodes) {
    if (!node->showing) continue;
    seen.push_back(node);
    calls.push_back(atspi::frameCall(node->reference));
  }
  const auto answers = conversation.exchange(std::move(calls));
  for (std::size_t index = 0; index < seen.size(); ++index) {
    atspi::setFrame(*seen[index], answers[index]);
  }
}

void AtspiTree::readValues(const AtspiNodes& nodes) {
  std::vector<BusCall> calls;
  for (const auto& node : nodes) {
    for (auto& call : atspi::valueCalls(node->reference))
      calls.push_back(std::move(call));
  }
  const auto answers = conversation.exchange(std::move(calls));
  for (std::size_t index = 0; index < nodes.size(); ++index) {
    atspi::setValue(*nodes[index], answers[2 * index], answers[2 * index + 1]);
    nodes[index]->valueKnown = true;
  }
}

} // namespace velmor
