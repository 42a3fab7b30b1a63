#pragma once

#include "base/VelmorError.h"
#include "platform/async/Waiting.h"
#include "ui/MainWindowOwner.h"
#include "ui/VelmorWindow.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmor {

/// Keeps the events that it gets.
class FakeEventSink : public EventSink {
public:
  struct Event {
    std::string name;
    std::optional<std::string> payload;
  };
  void emit(const std::string& event, const std::optional<std::string>& jsonPayload) override {
    events.push_back({event, jsonPayload});
  }
  std::vector<Event> events;
};

/// An application that keeps settings in memory and notes what else it is asked for. A suggestion
/// takes ten seconds; with a `failure`, saving and suggesting throw it.
class FakeMainWindowOwner : public MainWindowOwner {
public:
  explicit FakeMainWindowOwner(MainLoop& mainLoop) : loop(mainLoop) {}

  AppConfig settings() const override { return config; }
  void saveSettings(const AppConfig& next) override {
    failIfToldTo();
    config = next;
    config.normalise();
  }
  AppInfo appInfo() override { return {.version = "1.0.0", .buildDate = "16.11.2026"}; }
  Task<AppState> getState() override { co_return AppState{.provider = "API key required"}; }
  Task<UpdateInfo> checkForUpdate() override {
    co_return UpdateInfo{.current = "1.0.0", .offline = true};
  }
  void startNowPlayingWatcher() override { note("startNowPlayingWatcher"); }
  void stopNowPlayingWatcher() override { note("stopNowPlayingWatcher"); }
  Task<VisionResult> suggestTracks() override {
    co_await Sleep(loop, Seconds{10});
    const bool cancelled = co_await isCancelled();
    if (cancelled) note("cancelled");
    failIfToldTo();
    co_return VisionResult{.notice = "Detected through rekordbox deck metadata."};
  }
  CrateState crateState() override { return {.tracks = 2, .status = "Your crate: 2 tracks"}; }
  Task<std::vector<std::optional<CrateEntry>>> lookUpInCrate(std::vector<SongName> songs) override {
    std::vector<std::optional<CrateEntry>> entries(songs.size());
    if (!songs.empty()) entries.front() = CrateEntry{songs.front().song, songs.front().artist};
    co_return entries;
  }
  Task<VisionResult> suggestAfter(SongName song) override {
    failIfToldTo();
    co_return VisionResult{.notice = "After " + song.artist + " - " + song.song};
  }
  Task<void> showInFileManager(std::string uri) override {
    note("showInFileManager " + uri);
    co_return;
  }
  void setCrateKeys(bool count) override { note(count ? "keys" : "no keys"); }
  std::optional<TrackMetadata> detectedTrack() const override { return detected; }
  void restoreWindow() override { note("restoreWindow"); }
  void bringToFront() override { note("bringToFront"); }
  void minimize() override { note("minimize"); }
  void openURL(const std::string& url) override { note("openURL " + url); }
  void quit() override { note("quit"); }

  void setWebBridge(std::weak_ptr<EventSink> sink) override { bridge = std::move(sink); }
  void setMainWindow(std::weak_ptr<VelmorWindow> window) override { mainWindow = window; }
  void configureWindow(VelmorWindow& window) override {
    note("configureWindow");
    window.makeKeyAndOrderFront();
  }
  void shutdown(VelmorWindow&) override { note("shutdown"); }

  MainLoop& loop;
  AppConfig config;
  std::optional<TrackMetadata> detected;
  std::string failure;
  std::vector<std::string> calls;
  std::weak_ptr<EventSink> bridge;
  std::weak_ptr<VelmorWindow> mainWindow;

private:
  void note(const std::string& call) { calls.push_back(call); }
  void failIfToldTo() const {
    if (!failure.empty()) throw VelmorError(failure);
  }
};

} // namespace velmor
