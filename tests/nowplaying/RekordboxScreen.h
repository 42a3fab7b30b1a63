#pragma once

#include "nowplaying/readers/RekordboxDetector.h"
#include "tests/fakes/FakeSystem.h"

#include <memory>
#include <string>
#include <vector>

namespace velmor {

/// rekordbox's window as Accessibility shows it, with two decks side by side.
class RekordboxScreen {
public:
  struct Deck {
    std::string title;
    std::string artist;
    std::string elapsed;
    std::string bpm;
    std::string key;
  };

  static constexpr Rect window{{100, 40}, {1440, 900}};

  static std::vector<UIAText> texts(const Deck& left, const Deck& right) {
    std::vector<UIAText> texts;
    addDeck(texts, left, 120);
    addDeck(texts, right, 830);
    return texts;
  }

  static std::shared_ptr<FakeAccessibility::Element> element(const UIAText& text) {
    auto element = std::make_shared<FakeAccessibility::Element>();
    element->attributes = {{"AXValue", " " + text.name + "\n"},
                           {"AXPosition", text.rect.origin},
                           {"AXSize", text.rect.size}};
    return element;
  }

  /// A window that holds the texts.
  static AccessibilityElementPtr windowOf(const std::vector<UIAText>& texts,
                                          const Rect& frame = window) {
    std::vector<AccessibilityElementPtr> children;
    for (const auto& text : texts)
      children.push_back(element(text));
    auto shown = std::make_shared<FakeAccessibility::Element>();
    shown->attributes = {
        {"AXPosition", frame.origin}, {"AXSize", frame.size}, {"AXChildren", children}};
    return shown;
  }

  /// An application whose focused window this is.
  static std::shared_ptr<FakeAccessibility::Element>
  focusing(const AccessibilityElementPtr& focused) {
    auto app = std::make_shared<FakeAccessibility::Element>();
    app->attributes["AXFocusedWindow"] = focused;
    return app;
  }

  /// An application with one focused window that holds the texts.
  static std::shared_ptr<FakeAccessibility::Element> application(const std::vector<UIAText>& texts,
                                                                 const Rect& frame = window) {
    return focusing(windowOf(texts, frame));
  }

private:
  static void addDeck(std::vector<UIAText>& texts, const Deck& deck, double x) {
    texts.insert(texts.end(), {{deck.title, {{x, 90}, {400, 18}}},
                               {deck.artist, {{x + 2, 114}, {300, 14}}},
                               {deck.elapsed, {{x + 320, 115}, {40, 14}}},
                               {deck.bpm, {{x + 420, 112}, {60, 20}}},
                               {deck.key, {{x + 500, 116}, {30, 14}}}});
  }
};

} // namespace velmor
