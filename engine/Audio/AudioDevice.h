// The audio system's only door to OpenAL: one output device at 48000 Hz stereo with a fixed set of
// sources (the "channels"), PCM buffers, and the 3D listener. Owned by AudioSys, main thread only;
// OpenAL mixes on threads of its own. Ids handed out stay valid until the device is destroyed.
// Nothing outside this unit includes an OpenAL header.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace grindle {

inline constexpr int kOutputRate = 48000;
inline constexpr int kChannelCount = 100;

enum class SourceState { kIdle, kPlaying, kPaused, kStopped };

struct Vec3 {
  float x = 0.0f, y = 0.0f, z = 0.0f;
};

class AudioDevice {
 public:
  // Opens the default output; where none can be opened (no sound card, no backend) the device
  // mixes into nothing at the pace Advance() gives it, so the game behaves the same, silently.
  AudioDevice();
  ~AudioDevice();
  AudioDevice(const AudioDevice&) = delete;
  AudioDevice& operator=(const AudioDevice&) = delete;

  bool IsSilent() const { return pLoopback_ != nullptr; }
  uint32_t Source(int index) const { return sources_[static_cast<size_t>(index)]; }

  // 16-bit interleaved PCM, one or two channels.
  uint32_t CreateBuffer();
  void FillBuffer(uint32_t buffer, const int16_t* samples, size_t frames, int channels, int rate);
  void DeleteBuffer(uint32_t buffer);

  void Play(uint32_t source);
  void Pause(uint32_t source);
  // Stops and empties the source: every queued buffer is detached.
  void Stop(uint32_t source);
  SourceState State(uint32_t source) const;
  void SetGain(uint32_t source, float gain);
  void SetLooping(uint32_t source, bool looping);
  void Attach(uint32_t source, uint32_t buffer);
  void Queue(uint32_t source, uint32_t buffer);
  // Buffers the source has finished with, removed from its queue.
  std::vector<uint32_t> UnqueueProcessed(uint32_t source);
  // Head-relative at the origin (plain stereo playback) or at a point in the world.
  void PlaceAtListener(uint32_t source);
  void PlaceInWorld(uint32_t source, Vec3 position);

  void SetListener(Vec3 position, Vec3 forward, Vec3 up);

  // Lets a silent device's time run on by `seconds`; a real device keeps its own time.
  void Advance(float seconds);

 private:
  void* pDevice_ = nullptr;
  void* pContext_ = nullptr;
  void* pLoopback_ = nullptr;
  std::vector<uint32_t> sources_;
  std::vector<float> scratch_;
};

}  // namespace grindle
