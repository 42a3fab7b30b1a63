#pragma once

#include "platform/WebView.h"
#include "platform/async/TaskGroup.h"
#include "ui/MainWindowOwner.h"
#include "ui/PageMessage.h"

#include <memory>
#include <optional>
#include <string>

namespace velmor {

// clang-format off: it would fill the table as if it were a paragraph.
/// The only way between the page and the application: runs the page's messages as commands,
/// answers each by its id, and pushes events. Main thread only; it runs in the actor lane.
///
/// **Message.** The page posts a JSON object to the handler `handlerName`:
///
///     {"id": "7", "method": "BrowserOpenURL", "args": ["https://example.org"]}
///
/// `id` is a text that the page makes up, `method` a command, in the very letters below, and `args`
/// an array; without one, or with anything else there, there are no arguments. Arguments that a
/// command does not take are ignored. What has no text as `id` or as `method` is no message: it is
/// ignored and nothing answers it. An argument that nothing here can hold, such as the number
/// 1e400, counts as null (PageMessage.h).
///
/// **Reply.** Each message is answered once, by one of two scripts, which may come in another order
/// than the messages did. Every value is JSON text.
///
///     window.__velmorResolve("7", VALUE);
///     window.__velmorReject("7", "Invalid arguments");
///
/// Only a record that JSON has no form for, with a number that is none, is never answered.
///
/// | method             | argument    | VALUE         | what it does | | ------------------ |
/// ----------- | ------------- | ------------------------------------------ | | GetSettings | |
/// AppConfig     | keys and all                               | | SaveSettings       | AppConfig |
/// null          | keeps them: each member must be there      | | GetAppInfo         | | AppInfo |
/// | | CheckForUpdate     |             | UpdateInfo    | asks the version server | | GetState | |
/// AppState      |                                            | | StartAutoDetection | | null | if
/// `autoSuggestTracks` is on, else nothing | | SuggestTracks      |             | VisionResult  |
/// finds the track, asks the model            | | GetDetectedTrack   |             | TrackMetadata
/// | what SuggestTracks found last, or null     | | HoldWindow         | true, false | null | the
/// page is asked before the window closes | | GetCrate           |             | CrateState    |
/// begins to read the music, if need be       | | LookUpInCrate      | [SongName]  | [CrateEntry]
/// | one for each song, null for one not there  | | SuggestAfter       | SongName    | VisionResult
/// | from the crate, after a song that it has   | | SetCrateKeys       | true, false | null |
/// whether keys count in the crate's ranking  | | ShowInFileManager  | a URI       | null | of a
/// file of the crate, no other           | | RestoreWindow      |             | null          | out
/// of the compact square, to the front    | | StartCompactDrag   |             | null          |
/// nothing: the square follows the mouse      | | EndCompactDrag     |             | null |
/// nothing, likewise                          | | BringToFront       |             | null | | |
/// ShowAbout          |             | null          | pushes the event velmor:show-about         |
/// | Quit               |             | null          | | | WindowMinimise     |             | null
/// | into the compact square                    | | BrowserOpenURL     | a text      | null | does
/// nothing for a text that is no URL     |
///
/// **Errors.** "Invalid arguments" when the argument is missing or is not what the table says;
/// "Unknown method " and the method as it came, for any other; and what the command throws, in its
/// own words.
///
/// **Event.** `event` in EventSink.h lists them; without a payload PAYLOAD is null.
///
///     window.__velmorEmit("velmor:track-stopped", PAYLOAD);
// clang-format on
class WebBridge : public EventSink {
public:
  /// The name that the page posts its messages to.
  static constexpr auto handlerName = "velmor";

  WebBridge(MainLoop& mainLoop, std::shared_ptr<AppCommands> commands);

  /// The view that shows the page. While there is none, replies and events are dropped.
  void setWebView(std::weak_ptr<WebView> view) { webView = std::move(view); }

  /// Takes what the page posted to the handler `name`, as JSON text, and answers it in a task of
  /// its own. What was posted to another handler is ignored.
  void didReceive(const std::string& name, const std::string& body);

  void emit(const std::string& event, const std::optional<std::string>& jsonPayload) override;

  /// The page has gone and another comes in its place: what it has asked for is cancelled, and no
  /// reply to it reaches the next page, whose ids may be the same.
  void forgetPage();

  /// Whether the window may close when the user wants it to. False once after each HoldWindow: the
  /// page then hears event::closeAsked, and the next time the window closes.
  [[nodiscard]] bool mayClose();

  /// Calls `work` each time the last running command has ended.
  void whenIdle(MainLoop::Work work) { tasks.whenEmpty(std::move(work)); }
  [[nodiscard]] bool isIdle() const { return tasks.isEmpty(); }

private:
  [[nodiscard]] Task<void> answer(PageMessage message);
  void respond(const std::string& id, const std::string& json);
  void reject(const std::string& id, const std::string& message);
  void evaluate(const std::string& script);

  const std::shared_ptr<AppCommands> controller;
  std::weak_ptr<WebView> webView;
  /// How many pages there have been before this one.
  int pagesBefore = 0;
  bool isWindowHeld = false;
  TaskGroup tasks;
};

} // namespace velmor
