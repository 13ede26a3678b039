#include "Audio/Stream.h"

#include <algorithm>

#include "Audio/AudioDevice.h"

namespace grindle {

std::unique_ptr<Stream> Stream::Open(AudioDevice& device, const std::string& path) {
  std::unique_ptr<SoundDecoder> decoder = SoundDecoder::Open(path);
  if (decoder == nullptr) return nullptr;
  return std::unique_ptr<Stream>(new Stream(device, std::move(decoder)));
}

Stream::Stream(AudioDevice& device, std::unique_ptr<SoundDecoder> decoder)
    : device_(device), decoder_(std::move(decoder)) {
  buffers_.resize(kStreamBufferCount);
  for (uint32_t& buffer : buffers_) buffer = device_.CreateBuffer();
  chunk_.resize(kStreamChunkFrames * static_cast<size_t>(decoder_->Channels()));
}

Stream::~Stream() {
  for (uint32_t buffer : buffers_) device_.DeleteBuffer(buffer);
}

void Stream::Begin(uint32_t source, bool looping) {
  Release();
  isLooping_ = looping;
  isAtEnd_ = false;
  decoder_->Rewind();
  TopUp(source);
}

void Stream::SetLooping(bool looping) {
  isLooping_ = looping;
  // Everything may already be queued; a loop asked for now carries on from the start.
  if (looping && isAtEnd_) {
    isAtEnd_ = false;
    decoder_->Rewind();
  }
}

void Stream::Refill(uint32_t source, bool isPaused) {
  for (uint32_t buffer : device_.UnqueueProcessed(source)) {
    const auto played = std::find_if(queued_.begin(), queued_.end(),
                                     [buffer](const auto& entry) { return entry.first == buffer; });
    if (played == queued_.end()) continue;
    residentFrames_ -= played->second;
    queued_.erase(played);
  }
  TopUp(source);
  if (!isPaused && !queued_.empty() && device_.State(source) == SourceState::kStopped) {
    device_.Play(source);
  }
}

void Stream::TopUp(uint32_t source) {
  for (uint32_t buffer : buffers_) {
    const bool isQueued = std::any_of(queued_.begin(), queued_.end(), [buffer](const auto& entry) {
      return entry.first == buffer;
    });
    if (!isQueued && !QueueNext(source, buffer)) return;
  }
}

void Stream::Release() {
  queued_.clear();
  residentFrames_ = 0;
}

bool Stream::QueueNext(uint32_t source, uint32_t buffer) {
  const size_t channels = static_cast<size_t>(decoder_->Channels());
  size_t filled = 0;
  bool isRewound = false;
  while (filled < kStreamChunkFrames) {
    const size_t read =
        decoder_->Read(chunk_.data() + filled * channels, kStreamChunkFrames - filled);
    filled += read;
    if (read > 0) {
      isRewound = false;
      continue;
    }
    // The end of the file: a looping stream carries on from the start within the same chunk
    // (unless the start itself yields nothing, which would loop for ever).
    if (!isLooping_ || isRewound) {
      isAtEnd_ = true;
      break;
    }
    decoder_->Rewind();
    isRewound = true;
  }
  if (filled == 0) return false;
  device_.FillBuffer(buffer, chunk_.data(), filled, decoder_->Channels(), decoder_->Rate());
  device_.Queue(source, buffer);
  queued_.emplace_back(buffer, filled);
  residentFrames_ += filled;
  peakResidentFrames_ = std::max(peakResidentFrames_, residentFrames_);
  return true;
}

}  // namespace grindle
