// The hundred channels that sounds play on, one device source each. A ChannelHandle names one use
// of a channel: once that sound ends, is stopped or loses its channel to another, every call made
// through the old handle does nothing and IsPlaying says false. Owned by AudioSys; main thread
// only. A paused channel counts as playing; only an ended or stopped one is free for reuse.
#pragma once

#include <array>
#include <cstdint>

#include "Audio/AudioDevice.h"

namespace grindle {

class Stream;

// What a channel is used for, so whole groups can be muted or stopped at once.
enum class ChannelGroup { kEffect, kMusic, kVoice, kCount };

struct ChannelHandle {
  int index = -1;
  uint32_t generation = 0;
};

inline constexpr int kDefaultPriority = 128;  // 0 is the most important

class ChannelPool {
 public:
  explicit ChannelPool(AudioDevice& device) : device_(device) {}
  ~ChannelPool();
  ChannelPool(const ChannelPool&) = delete;
  ChannelPool& operator=(const ChannelPool&) = delete;

  // Puts a loaded buffer or a stream on a free channel (taking the least important, oldest one
  // when all are busy), paused, at the listener, volume 1, not looping.
  ChannelHandle PlayBuffer(uint32_t buffer, ChannelGroup group);
  ChannelHandle PlayStream(Stream& stream, ChannelGroup group);

  void Stop(ChannelHandle handle);
  void SetVolume(ChannelHandle handle, float volume);
  void SetPaused(ChannelHandle handle, bool isPaused);
  void SetMute(ChannelHandle handle, bool isMuted);
  void SetLooping(ChannelHandle handle, bool isLooping);
  void SetPriority(ChannelHandle handle, int priority);
  void PlaceInWorld(ChannelHandle handle, Vec3 position);
  bool IsPlaying(ChannelHandle handle);
  // How a sound item or a song pauses: silenced and paused; resuming gives it `volume` again.
  void PauseSilenced(ChannelHandle handle);
  void Resume(ChannelHandle handle, float volume);

  void StopGroup(ChannelGroup group);
  // Silences every channel of the group, present and future, without touching their volumes.
  void SetGroupMuted(ChannelGroup group, bool isMuted);

  // Refills the streams and frees the channels whose sound has ended.
  void Update();
  int PlayingCount();

 private:
  struct Channel {
    uint32_t generation = 1;
    bool isActive = false;
    bool isPaused = false;
    bool isMuted = false;
    float volume = 1.0f;
    int priority = kDefaultPriority;
    uint64_t startOrder = 0;
    ChannelGroup group = ChannelGroup::kEffect;
    Stream* pStream = nullptr;
  };

  // The channel the handle still names, or null.
  Channel* Find(ChannelHandle handle);
  ChannelHandle Acquire(ChannelGroup group);
  void ApplyGain(int index);
  void Retire(int index);
  // Retires the channel when its sound has played to the end; true while it still plays.
  bool Refresh(int index);
  uint32_t SourceOf(int index) const { return device_.Source(index); }

  AudioDevice& device_;
  std::array<Channel, kChannelCount> channels_{};
  std::array<bool, static_cast<size_t>(ChannelGroup::kCount)> isGroupMuted_{};
  uint64_t uStarts_ = 0;
};

}  // namespace grindle
