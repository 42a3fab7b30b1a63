#pragma once

#include "platform/MediaRemote.h"

#include <vector>

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
  /// How long each question was waited for.
  std::vector<Seconds> limits;

private:
  class Session : public MediaRemoteSession {
  public:
    explicit Session(FakeMediaRemote& owner) : remote(owner) {}
    std::optional<bool> nowPlayingApplicationIsPlaying(Seconds limit) override {
      remote.limits.push_back(limit);
      return remote.playing;
    }
    std::optional<NowPlayingInfo> nowPlayingInfo(Seconds limit) override {
      remote.limits.push_back(limit);
      return remote.info;
    }
    std::optional<std::string> nowPlayingClient(Seconds limit) override {
      remote.limits.push_back(limit);
      ++remote.clientQueries;
      return remote.client;
    }

  private:
    FakeMediaRemote& remote;
  };
};

} // namespace velmor
