#pragma once

#include "platform/MediaRemote.h"

namespace velmor {

/// A media session that a test sets up; a member without a value never answers.
class FakeMediaRemote : public MediaRemote {
public:
  std::unique_ptr<MediaRemoteSession> open() override {
    ++opened;
    return available ? std::make_unique<Session>(*this) : nullptr;
  }

  bool available = true;
  std::optional<bool> playing;
  std::optional<NowPlayingInfo> info;
  std::optional<std::string> client;
  int opened = 0;
  int clientQueries = 0;

private:
  class Session : public MediaRemoteSession {
  public:
    explicit Session(FakeMediaRemote& owner) : remote(owner) {}
    std::optional<bool> nowPlayingApplicationIsPlaying(Seconds) override { return remote.playing; }
    std::optional<NowPlayingInfo> nowPlayingInfo(Seconds) override { return remote.info; }
    std::optional<std::string> nowPlayingClient(Seconds) override {
      ++remote.clientQueries;
      return remote.client;
    }

  private:
    FakeMediaRemote& remote;
  };
};

} // namespace velmor
