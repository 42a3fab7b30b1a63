#include "platform/linux/accessibility/AtspiCache.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

namespace velmor {

namespace {

/// An item of an answer in GVariant's text form: a showing element, its interfaces in quotes.
std::string item(const std::string& path, const std::string& parent, int index, int children,
                 const std::string& name, const std::string& interfaces = "") {
  return "((':1', '" + path + "'), (':1', '/root'), (':1', '" + parent + "'), " +
         std::to_string(index) + ", " + std::to_string(children) + ", [" + interfaces + "], '" +
         name + "', 0, '', [33554432, 0])";
}

VariantPtr answer(const std::string& items) {
  constexpr auto type = "(a((so)(so)(so)iiassusau))";
  return VariantPtr(g_variant_parse(G_VARIANT_TYPE(type), ("([" + items + "],)").c_str(), nullptr,
                                    nullptr, nullptr));
}

AtspiNodePtr window() {
  auto node = std::make_shared<AtspiNode>();
  node->reference = {":1", "/w"};
  return node;
}

TEST(AtspiCacheTest, HangsTheTreeBelowAWindow) {
  const AtspiCache cache(
      answer(item("/b", "/w", 1, 0, "second", "'org.a11y.atspi.Text'") + "," +
             item("/w", "/root", 0, 2, "window") + "," + item("/a", "/w", 0, 1, "") + "," +
             item("/c", "/a", 0, -1, "inner") + "," + item("/x", "/other", 0, 0, "elsewhere")));
  const auto node = window();
  const auto below = cache.attachBelow(node);
  ASSERT_TRUE(below);
  EXPECT_EQ(below->size(), 3U);
  ASSERT_EQ(node->children.size(), 2U);
  const auto& [first, second] = std::tie(node->children[0], node->children[1]);
  EXPECT_EQ(first->children.at(0)->name, "inner");
  EXPECT_FALSE(first->mayHoldValue);
  EXPECT_EQ(second->name, "second");
  EXPECT_TRUE(second->mayHoldValue && second->showing && second->childrenKnown);
}

TEST(AtspiCacheTest, GivesNothingWhenItDoesNotKnowAll) {
  for (const auto& items :
       {item("/a", "/w", 0, 0, "the window is missing"),
        item("/w", "/root", 0, 1, "") + "," + item("/a", "/w", 0, 1, "a child is missing")}) {
    const auto node = window();
    EXPECT_FALSE(AtspiCache(answer(items)).attachBelow(node)) << items;
    EXPECT_FALSE(node->childrenKnown);
  }
  EXPECT_FALSE(AtspiCache(nullptr).attachBelow(window()));
}

TEST(AtspiCacheTest, IsNotCaughtInALoop) {
  const AtspiCache cache(answer(item("/w", "/a", 0, 1, "") + "," + item("/a", "/w", 0, 1, "")));
  const auto node = window();
  ASSERT_TRUE(cache.attachBelow(node));
  ASSERT_EQ(node->children.size(), 1U);
  EXPECT_TRUE(node->children.front()->children.empty());
}

TEST(AtspiCallsTest, TakesOnlyWhatMakesSense) {
  const auto parse = [](const char* text) {
    return VariantPtr(g_variant_parse(nullptr, text, nullptr, nullptr, nullptr));
  };
  const std::vector<std::tuple<const char*, bool, Point, Size>> frames = {
      {"((-5, -6, 70, 80),)", true, {-5, -6}, {70, 80}},
      {"((5, 6, 70, 80),)", false, {}, {}},
      {"((5, 6, 0, 80),)", true, {}, {}},
  };
  for (const auto& [frame, showing, position, size] : frames) {
    AtspiNode node;
    node.showing = showing;
    atspi::setFrame(node, parse(frame));
    EXPECT_EQ(node.position, position) << frame;
    EXPECT_EQ(node.size, size) << frame;
  }
  AtspiNode node;
  atspi::setValue(node, parse("('',)"), parse("(<'text'>,)"));
  EXPECT_EQ(node.value, "");
  atspi::setValue(node, parse("('',)"), parse("(<0.25>,)"));
  EXPECT_EQ(node.value, "0.25");
  atspi::setValue(node, parse("('typed',)"), parse("(<128.0>,)"));
  atspi::setValue(node, nullptr, nullptr);
  EXPECT_EQ(node.value, "typed");
}

} // namespace

} // namespace velmor
