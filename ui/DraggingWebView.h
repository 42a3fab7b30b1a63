#pragma once

#include "platform/PageView.h"
#include "platform/Window.h"

#include <memory>
#include <utility>

namespace velmor {

/// The web view that fills the main window. Its one rule: a drag on what the page does not handle
/// moves the window. Main thread only.
class DraggingWebView {
public:
  static constexpr bool mouseDownCanMoveWindow = true;

  /// Fills the window's content with the view.
  DraggingWebView(Window& window, WebViewConfiguration configuration)
      : view(window.addWebView(dragging(std::move(configuration)))) {}

  /// The view as the system knows it, for all that takes no rule of this class.
  [[nodiscard]] const std::shared_ptr<PageView>& native() const { return view; }

private:
  static WebViewConfiguration dragging(WebViewConfiguration configuration) {
    configuration.mouseDownCanMoveWindow = mouseDownCanMoveWindow;
    return configuration;
  }

  const std::shared_ptr<PageView> view;
};

} // namespace velmor
