// A piece of music: one or more streamed variants of the same name and the one channel they play
// on, so a song never overlaps itself. Owned by the SoundBank, played by AudioSys; main thread
// only.
#pragma once

#include <memory>
#include <vector>

#include "Audio/ChannelPool.h"
#include "Audio/Stream.h"

namespace grindle {

class Song {
 public:
  void AddVariant(std::unique_ptr<Stream> stream) { variants_.push_back(std::move(stream)); }

  // Picks a variant at random and starts it on the song's own channel, which it returns.
  ChannelHandle Play(ChannelPool& pool, bool isLooping, float musicVolume, float scale);
  ChannelHandle Channel() const { return channel_; }
  float Volume() const { return fVolume_; }
  size_t VariantCount() const { return variants_.size(); }
  const Stream& Variant(size_t index) const { return *variants_[index]; }

 private:
  std::vector<std::unique_ptr<Stream>> variants_;
  ChannelHandle channel_;
  float fVolume_ = 1.0f;
};

}  // namespace grindle
