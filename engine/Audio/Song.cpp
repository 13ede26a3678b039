#include "Audio/Song.h"

#include <cstdlib>

namespace grindle {

ChannelHandle Song::Play(ChannelPool& pool, bool isLooping, float musicVolume, float scale) {
  Stream& variant = *variants_[static_cast<size_t>(std::rand()) % variants_.size()];
  pool.Stop(channel_);
  channel_ = pool.PlayStream(variant, ChannelGroup::kMusic);
  pool.SetVolume(channel_, fVolume_ * musicVolume * scale);
  pool.SetLooping(channel_, isLooping);
  pool.SetPaused(channel_, false);
  pool.SetPriority(channel_, 0);
  return channel_;
}

}  // namespace grindle
