// A sound played from its file a chunk at a time: a few buffers queued on the source of the
// channel that plays it, refilled as the device finishes them, so that a long song or line never
// sits decoded in memory. Owned by AudioSys, driven by ChannelPool; main thread only. A stream
// feeds at most one channel at a time (playing it again restarts it).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Audio/SoundFile.h"

namespace grindle {

class AudioDevice;

inline constexpr size_t kStreamChunkFrames = 8192;
inline constexpr size_t kStreamBufferCount = 4;

class Stream {
 public:
  // Null when the file cannot be decoded (the decoder has said why).
  static std::unique_ptr<Stream> Open(AudioDevice& device, const std::string& path);
  ~Stream();
  Stream(const Stream&) = delete;
  Stream& operator=(const Stream&) = delete;

  // Rewinds the file and queues the first chunks on `source`.
  void Begin(uint32_t source, bool looping);
  void SetLooping(bool looping);
  // Takes back what `source` has played, queues what follows, and restarts the source if it ran
  // dry while data remains (a late frame must not end a song).
  void Refill(uint32_t source, bool isPaused);
  // The source was stopped and emptied: every buffer is free again.
  void Release();
  // Everything was queued and has been played.
  bool IsFinished() const { return isAtEnd_ && queued_.empty(); }

  size_t ResidentFrames() const { return residentFrames_; }
  size_t PeakResidentFrames() const { return peakResidentFrames_; }
  size_t TotalFrames() const { return decoder_->TotalFrames(); }

 private:
  Stream(AudioDevice& device, std::unique_ptr<SoundDecoder> decoder);
  // Queues a chunk in every buffer the source does not hold, until the file ends.
  void TopUp(uint32_t source);
  // Decodes the next chunk into `buffer` and queues it; false when the file has nothing left.
  bool QueueNext(uint32_t source, uint32_t buffer);

  AudioDevice& device_;
  std::unique_ptr<SoundDecoder> decoder_;
  std::vector<uint32_t> buffers_;
  std::vector<std::pair<uint32_t, size_t>> queued_;  // buffer and its frames, play order
  std::vector<int16_t> chunk_;
  size_t residentFrames_ = 0;
  size_t peakResidentFrames_ = 0;
  bool isLooping_ = false;
  bool isAtEnd_ = false;
};

}  // namespace grindle
