#include "platform/linux/page/WebKitPageDrag.h"

#include "platform/linux/page/WebKitProfile.h"

#include <webkit2/webkit2.h>

#include <cmath>
#include <utility>

namespace velmor {

namespace {

constexpr auto world = "velmor-window";
constexpr auto handler = "velmorBackground";
/// A hand that only clicks trembles less than this.
constexpr double clickRadius = 4;

constexpr auto script = R"js((() => {
  'use strict';
  const handling = 'a[href],button,input,textarea,select,option,label,summary,iframe,' +
    '[contenteditable],[draggable="true"],[tabindex]:not([tabindex="-1"]),[role="button"],' +
    '[role="slider"],[role="switch"],[role="tab"],[role="link"],[role="option"]';
  const scrollBar = 14;
  let dragged = false;

  function contains(box, { clientX: x, clientY: y }) {
    return x >= box.left && x < box.right && y >= box.top && y < box.bottom;
  }

  function onScrollBar(event) {
    for (let place = event.target; place; place = place.parentElement) {
      const box = place.getBoundingClientRect();
      const root = place === document.documentElement;
      const right = root ? innerWidth : box.right;
      const bottom = root ? innerHeight : box.bottom;
      const scrolls = (overflow) => root || overflow === 'auto' || overflow === 'scroll';
      const style = getComputedStyle(place);
      if (place.scrollHeight > place.clientHeight && scrolls(style.overflowY) &&
          event.clientX >= right - scrollBar) return true;
      if (place.scrollWidth > place.clientWidth && scrolls(style.overflowX) &&
          event.clientY >= bottom - scrollBar) return true;
    }
    return false;
  }

  function onSelectableText(event) {
    const text = document.caretRangeFromPoint(event.clientX, event.clientY)?.startContainer;
    if (text?.nodeType !== Node.TEXT_NODE) return false;
    if (getComputedStyle(text.parentElement).webkitUserSelect === 'none') return false;
    // The caret goes to the nearest text, however far away that is.
    const range = document.createRange();
    range.selectNodeContents(text);
    return [...range.getClientRects()].some((box) => contains(box, event));
  }

  window.addEventListener('mousedown', (event) => {
    dragged = false;
    if (event.button !== 0 || event.defaultPrevented || !(event.target instanceof Element)) return;
    if (event.target.closest(handling) || onScrollBar(event) || onSelectableText(event)) return;
    window.webkit.messageHandlers.velmorBackground.postMessage('');
  });

  // The end of a drag is no click.
  window.addEventListener('click', (event) => {
    if (!dragged) return;
    dragged = false;
    event.preventDefault();
    event.stopImmediatePropagation();
  }, true);

  window.velmorDragged = () => { dragged = true; };
})())js";

Point rootPosition(const GdkEvent* event) {
  Point mouse;
  gdk_event_get_root_coords(event, &mouse.x, &mouse.y);
  return mouse;
}

} // namespace

WebKitPageDrag::WebKitPageDrag(_WebKitUserContentManager* manager, WindowPlace window)
    : place(std::move(window)) {
  const auto received = [](WebKitUserContentManager*, WebKitJavascriptResult*, gpointer data) {
    static_cast<WebKitPageDrag*>(data)->pressedOnBackground();
  };
  signals.connect(manager, "script-message-received::velmorBackground", +received, this);
  webkit_user_content_manager_register_script_message_handler_in_world(manager, handler, world);
  WebKitProfile::addScript(manager, script, world);
}

void WebKitPageDrag::attach(_WebKitWebView* shown) {
  view = shown;
  const auto press = [](GtkWidget*, GdkEvent* event, gpointer data) -> gboolean {
    if (event->type == GDK_BUTTON_PRESS && event->button.button == GDK_BUTTON_PRIMARY)
      static_cast<WebKitPageDrag*>(data)->pressed(rootPosition(event));
    return FALSE;
  };
  const auto motion = [](GtkWidget*, GdkEvent* event, gpointer data) -> gboolean {
    return static_cast<WebKitPageDrag*>(data)->moved(rootPosition(event)) ? TRUE : FALSE;
  };
  const auto release = [](GtkWidget*, GdkEvent* event, gpointer data) -> gboolean {
    if (event->button.button == GDK_BUTTON_PRIMARY) static_cast<WebKitPageDrag*>(data)->released();
    return FALSE;
  };
  signals.connect(view, "button-press-event", +press, this);
  signals.connect(view, "motion-notify-event", +motion, this);
  signals.connect(view, "button-release-event", +release, this);
}

void WebKitPageDrag::pressed(Point mouse) {
  state = State::Pressed;
  pressedAt = mouse;
  origin = place.frame().origin;
}

void WebKitPageDrag::pressedOnBackground() {
  // The button may be up again by the time the page has answered.
  if (enabled && state == State::Pressed) state = State::OnBackground;
}

bool WebKitPageDrag::moved(Point mouse) {
  const double right = mouse.x - pressedAt.x;
  const double down = mouse.y - pressedAt.y;
  if (state == State::OnBackground && std::hypot(right, down) >= clickRadius) {
    state = State::Dragging;
    webkit_web_view_evaluate_javascript(view, "velmorDragged()", -1, world, nullptr, nullptr,
                                        nullptr, nullptr);
  }
  if (state != State::Dragging) return false;
  place.setFrame({{origin.x + right, origin.y - down}, place.frame().size});
  return true;
}

} // namespace velmor
