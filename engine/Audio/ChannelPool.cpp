#include "Audio/ChannelPool.h"

#include "Audio/Stream.h"

namespace grindle {

ChannelPool::~ChannelPool() {
  for (int i = 0; i < kChannelCount; ++i) {
    if (channels_[static_cast<size_t>(i)].isActive) Retire(i);
  }
}

ChannelPool::Channel* ChannelPool::Find(ChannelHandle handle) {
  if (handle.index < 0 || handle.index >= kChannelCount) return nullptr;
  Channel& channel = channels_[static_cast<size_t>(handle.index)];
  if (!channel.isActive || channel.generation != handle.generation) return nullptr;
  return &channel;
}

ChannelHandle ChannelPool::Acquire(ChannelGroup group) {
  int chosen = -1;
  for (int i = 0; i < kChannelCount && chosen < 0; ++i) {
    if (!Refresh(i)) chosen = i;
  }
  if (chosen < 0) {
    // All busy: the least important sound gives way, the oldest among equals.
    chosen = 0;
    for (int i = 1; i < kChannelCount; ++i) {
      const Channel& candidate = channels_[static_cast<size_t>(i)];
      const Channel& best = channels_[static_cast<size_t>(chosen)];
      if (candidate.priority > best.priority ||
          (candidate.priority == best.priority && candidate.startOrder < best.startOrder)) {
        chosen = i;
      }
    }
    Retire(chosen);
  }
  Channel& channel = channels_[static_cast<size_t>(chosen)];
  channel.isActive = true;
  channel.isPaused = true;
  channel.isMuted = false;
  channel.volume = 1.0f;
  channel.priority = kDefaultPriority;
  channel.startOrder = ++uStarts_;
  channel.group = group;
  const uint32_t source = SourceOf(chosen);
  device_.SetLooping(source, false);
  device_.PlaceAtListener(source);
  ApplyGain(chosen);
  return {chosen, channel.generation};
}

ChannelHandle ChannelPool::PlayBuffer(uint32_t buffer, ChannelGroup group) {
  const ChannelHandle handle = Acquire(group);
  device_.Attach(SourceOf(handle.index), buffer);
  return handle;
}

ChannelHandle ChannelPool::PlayStream(Stream& stream, ChannelGroup group) {
  // A stream plays in one place at a time: starting it again takes it from its old channel.
  for (int i = 0; i < kChannelCount; ++i) {
    if (channels_[static_cast<size_t>(i)].pStream == &stream) Retire(i);
  }
  const ChannelHandle handle = Acquire(group);
  channels_[static_cast<size_t>(handle.index)].pStream = &stream;
  stream.Begin(SourceOf(handle.index), false);
  return handle;
}

void ChannelPool::Stop(ChannelHandle handle) {
  if (Find(handle) != nullptr) Retire(handle.index);
}

void ChannelPool::SetVolume(ChannelHandle handle, float volume) {
  Channel* channel = Find(handle);
  if (channel == nullptr) return;
  channel->volume = volume;
  ApplyGain(handle.index);
}

void ChannelPool::SetPaused(ChannelHandle handle, bool isPaused) {
  Channel* channel = Find(handle);
  if (channel == nullptr || channel->isPaused == isPaused) return;
  channel->isPaused = isPaused;
  if (isPaused) {
    device_.Pause(SourceOf(handle.index));
  } else {
    device_.Play(SourceOf(handle.index));
  }
}

void ChannelPool::SetMute(ChannelHandle handle, bool isMuted) {
  Channel* channel = Find(handle);
  if (channel == nullptr) return;
  channel->isMuted = isMuted;
  ApplyGain(handle.index);
}

void ChannelPool::SetLooping(ChannelHandle handle, bool isLooping) {
  Channel* channel = Find(handle);
  if (channel == nullptr) return;
  if (channel->pStream != nullptr) {
    channel->pStream->SetLooping(isLooping);
  } else {
    device_.SetLooping(SourceOf(handle.index), isLooping);
  }
}

void ChannelPool::SetPriority(ChannelHandle handle, int priority) {
  if (Channel* channel = Find(handle)) channel->priority = priority;
}

void ChannelPool::PlaceInWorld(ChannelHandle handle, Vec3 position) {
  if (Find(handle) != nullptr) device_.PlaceInWorld(SourceOf(handle.index), position);
}

bool ChannelPool::IsPlaying(ChannelHandle handle) {
  return Find(handle) != nullptr && Refresh(handle.index);
}

void ChannelPool::PauseSilenced(ChannelHandle handle) {
  SetVolume(handle, 0.0f);
  SetPaused(handle, true);
}

void ChannelPool::Resume(ChannelHandle handle, float volume) {
  SetVolume(handle, volume);
  SetPaused(handle, false);
}

void ChannelPool::StopGroup(ChannelGroup group) {
  for (int i = 0; i < kChannelCount; ++i) {
    const Channel& channel = channels_[static_cast<size_t>(i)];
    if (channel.isActive && channel.group == group) Retire(i);
  }
}

void ChannelPool::SetGroupMuted(ChannelGroup group, bool isMuted) {
  isGroupMuted_[static_cast<size_t>(group)] = isMuted;
  for (int i = 0; i < kChannelCount; ++i) {
    const Channel& channel = channels_[static_cast<size_t>(i)];
    if (channel.isActive && channel.group == group) ApplyGain(i);
  }
}

void ChannelPool::Update() {
  for (int i = 0; i < kChannelCount; ++i) Refresh(i);
}

int ChannelPool::PlayingCount() {
  int count = 0;
  for (int i = 0; i < kChannelCount; ++i) count += Refresh(i) ? 1 : 0;
  return count;
}

void ChannelPool::ApplyGain(int index) {
  const Channel& channel = channels_[static_cast<size_t>(index)];
  const bool isSilenced = channel.isMuted || isGroupMuted_[static_cast<size_t>(channel.group)];
  device_.SetGain(SourceOf(index), isSilenced ? 0.0f : channel.volume);
}

void ChannelPool::Retire(int index) {
  Channel& channel = channels_[static_cast<size_t>(index)];
  device_.Stop(SourceOf(index));
  if (channel.pStream != nullptr) channel.pStream->Release();
  channel.pStream = nullptr;
  channel.isActive = false;
  ++channel.generation;
}

bool ChannelPool::Refresh(int index) {
  Channel& channel = channels_[static_cast<size_t>(index)];
  if (!channel.isActive) return false;
  const uint32_t source = SourceOf(index);
  if (channel.pStream != nullptr) channel.pStream->Refill(source, channel.isPaused);
  const bool hasEnded = device_.State(source) == SourceState::kStopped &&
                        (channel.pStream == nullptr || channel.pStream->IsFinished());
  if (hasEnded) Retire(index);
  return !hasEnded;
}

}  // namespace grindle
