#include "platform/linux/AtspiCache.h"

#include "platform/linux/AtspiCalls.h"

#include <gio/gio.h>
#include <gmock/gmock.h>

namespace velmor {

namespace {

using testing::ElementsAre;

/// The answer with items given as (path, parent, index, number of children, interfaces, name).
VariantPtr answer(const std::string& items) {
  const auto type = G_VARIANT_TYPE("a(ssiiass)");
  const VariantPtr given(g_variant_parse(type, items.c_str(), nullptr, nullptr, nullptr));
  if (!given) throw std::runtime_error("not items: " + items);
  GVariantBuilder builder;
  g_variant_builder_init(&builder, G_VARIANT_TYPE("a((so)(so)(so)iiassusau)"));
  for (gsize position = 0; position < g_variant_n_children(given.get()); ++position) {
    const char* path = nullptr;
    const char* parent = nullptr;
    gint32 index = 0;
    gint32 count = 0;
    GVariant* interfaces = nullptr;
    const char* name = nullptr;
    g_variant_get_child(given.get(), position, "(&s&sii@as&s)", &path, &parent, &index, &count,
                        &interfaces, &name);
    const VariantPtr owner(interfaces);
    constexpr guint32 showing = 1U << 25;
    const std::array<guint32, 2> states{showing, 0};
    g_variant_builder_add(
        &builder, "((so)(so)(so)ii@assus@au)", ":1", path, ":1", "/root", ":1", parent, index,
        count, interfaces, name, 0, "",
        g_variant_new_fixed_array(G_VARIANT_TYPE_UINT32, states.data(), 2, sizeof(guint32)));
  }
  return VariantPtr(g_variant_ref_sink(g_variant_new("(a((so)(so)(so)iiassusau))", &builder)));
}

AtspiNodePtr window() {
  auto node = std::make_shared<AtspiNode>();
  node->reference = {":1", "/w"};
  return node;
}

TEST(AtspiCacheTest, HangsTheTreeBelowAWindow) {
  const AtspiCache cache(
      answer("[('/b', '/w', 1, 0, ['org.a11y.atspi.Text'], 'second'),"
             " ('/w', '/root', 0, 2, [], 'window'), ('/a', '/w', 0, 1, [], ''),"
             " ('/c', '/a', 0, -1, [], 'inner'), ('/x', '/other', 0, 0, [], 'elsewhere')]"));
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
  const std::vector<const char*> incomplete = {
      "[]",
      "[('/a', '/w', 0, 0, [], 'the window is missing')]",
      "[('/w', '/root', 0, 2, [], ''), ('/a', '/w', 0, 0, [], 'one of two')]",
      "[('/w', '/root', 0, 1, [], ''), ('/a', '/w', 0, 1, [], 'a child is missing')]",
  };
  for (const auto* items : incomplete) {
    const auto node = window();
    EXPECT_FALSE(AtspiCache(answer(items)).attachBelow(node)) << items;
    EXPECT_FALSE(node->childrenKnown);
  }
  EXPECT_FALSE(AtspiCache(nullptr).attachBelow(window()));
}

TEST(AtspiCacheTest, IsNotCaughtInALoop) {
  const AtspiCache cache(answer("[('/w', '/a', 0, 1, [], ''), ('/a', '/w', 0, 1, [], 'child')]"));
  const auto node = window();
  ASSERT_TRUE(cache.attachBelow(node));
  ASSERT_EQ(node->children.size(), 1U);
  EXPECT_TRUE(node->children.front()->children.empty());
}

TEST(AtspiCallsTest, TakesOnlyWhatMakesSense) {
  const auto parse = [](const char* text) {
    return VariantPtr(g_variant_parse(nullptr, text, nullptr, nullptr, nullptr));
  };
  struct Case {
    const char* frame;
    bool showing;
    Point position;
    Size size;
  };
  const std::vector<Case> cases = {
      {"((5, 6, 70, 80),)", true, {5, 6}, {70, 80}},
      {"((-5, -6, 70, 80),)", true, {-5, -6}, {70, 80}},
      {"((5, 6, 70, 80),)", false, {}, {}},
      {"((-2147483648, -2147483648, -2147483648, -2147483648),)", true, {}, {}},
      {"((5, 6, 0, 80),)", true, {}, {}},
  };
  for (const auto& [frame, showing, position, size] : cases) {
    AtspiNode node;
    node.showing = showing;
    atspi::setFrame(node, parse(frame));
    EXPECT_EQ(node.position, position) << frame;
    EXPECT_EQ(node.size, size) << frame;
  }
  const std::vector<std::tuple<const char*, const char*, const char*>> values = {
      {"('typed',)", "(<128.0>,)", "typed"},
      {"('',)", "(<128.0>,)", "128"},
      {"('',)", "(<0.25>,)", "0.25"},
      {"('',)", "(<'text'>,)", ""},
  };
  for (const auto& [text, number, expected] : values) {
    AtspiNode node;
    atspi::setValue(node, parse(text), parse(number));
    EXPECT_EQ(node.value, expected);
    atspi::setValue(node, nullptr, nullptr);
    EXPECT_EQ(node.value, expected);
  }
}

} // namespace

} // namespace velmor
