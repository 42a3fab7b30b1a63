#include "platform/linux/accessibility/AtspiTree.h"

#include "platform/linux/accessibility/AtspiBus.h"
#include "platform/linux/accessibility/AtspiCache.h"

#include <utility>

namespace velmor {

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
