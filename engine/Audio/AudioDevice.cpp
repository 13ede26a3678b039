#include "Audio/AudioDevice.h"

#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>

#include <algorithm>
#include <cstdio>

#include "Core/Assert.h"

namespace grindle {
namespace {

constexpr const char* kResultText = "result != AL_NO_ERROR";
constexpr const char* kCreateFailed = "Failed to create audio system";

ALCdevice* Device(void* p) { return static_cast<ALCdevice*>(p); }

ALCdevice* OpenSilentDevice() {
  auto open = reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(
      alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
  return open != nullptr ? open(nullptr) : nullptr;
}

}  // namespace

AudioDevice::AudioDevice() {
  // 1. The output device, or a silent one that nobody listens to.
  ALCdevice* device = alcOpenDevice(nullptr);
  if (device == nullptr) {
    device = OpenSilentDevice();
    pLoopback_ = device;
    if (device != nullptr) std::printf("Audio: no output device, mixing silently\n");
  }
  GRINDLE_ASSERT_TEXT(device == nullptr, kResultText, kCreateFailed);
  pDevice_ = device;

  // 2. 48000 Hz float mixing. A real device takes its sample type from its own configuration;
  // the silent one is asked for float outright. HRTF and the limiter stay off so levels are linear.
  std::vector<ALCint> attributes = {
      ALC_FREQUENCY, kOutputRate, ALC_MONO_SOURCES,        kChannelCount, ALC_STEREO_SOURCES, 0,
      ALC_HRTF_SOFT, ALC_FALSE,   ALC_OUTPUT_LIMITER_SOFT, ALC_FALSE};
  if (pLoopback_ != nullptr) {
    attributes.insert(attributes.end(), {ALC_FORMAT_CHANNELS_SOFT, ALC_STEREO_SOFT,
                                         ALC_FORMAT_TYPE_SOFT, ALC_FLOAT_SOFT});
  }
  attributes.push_back(0);
  ALCcontext* context = alcCreateContext(device, attributes.data());
  GRINDLE_ASSERT_TEXT(context == nullptr, kResultText, kCreateFailed);
  pContext_ = context;

  // 3. Stereo output, current on this process.
  GRINDLE_ASSERT_TEXT(alcMakeContextCurrent(context) != ALC_TRUE, kResultText, kCreateFailed);

  // 4. The fixed set of channels.
  sources_.resize(kChannelCount);
  alGetError();
  alGenSources(kChannelCount, sources_.data());
  GRINDLE_ASSERT_TEXT(alGetError() != AL_NO_ERROR, kResultText, "Failed to initialize system");
}

AudioDevice::~AudioDevice() {
  for (uint32_t source : sources_) Stop(source);
  alDeleteSources(static_cast<ALsizei>(sources_.size()), sources_.data());
  alcMakeContextCurrent(nullptr);
  alcDestroyContext(static_cast<ALCcontext*>(pContext_));
  alcCloseDevice(Device(pDevice_));
}

uint32_t AudioDevice::CreateBuffer() {
  ALuint buffer = 0;
  alGenBuffers(1, &buffer);
  return buffer;
}

void AudioDevice::FillBuffer(uint32_t buffer, const int16_t* samples, size_t frames, int channels,
                             int rate) {
  const ALenum format = channels == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16;
  alBufferData(buffer, format, samples,
               static_cast<ALsizei>(frames * static_cast<size_t>(channels) * sizeof(int16_t)),
               rate);
}

void AudioDevice::DeleteBuffer(uint32_t buffer) { alDeleteBuffers(1, &buffer); }

void AudioDevice::Play(uint32_t source) { alSourcePlay(source); }
void AudioDevice::Pause(uint32_t source) { alSourcePause(source); }

void AudioDevice::Stop(uint32_t source) {
  alSourceStop(source);
  alSourcei(source, AL_BUFFER, 0);
}

SourceState AudioDevice::State(uint32_t source) const {
  ALint state = AL_INITIAL;
  alGetSourcei(source, AL_SOURCE_STATE, &state);
  switch (state) {
    case AL_PLAYING:
      return SourceState::kPlaying;
    case AL_PAUSED:
      return SourceState::kPaused;
    case AL_STOPPED:
      return SourceState::kStopped;
    default:
      return SourceState::kIdle;
  }
}

void AudioDevice::SetGain(uint32_t source, float gain) {
  alSourcef(source, AL_GAIN, std::max(gain, 0.0f));
}

void AudioDevice::SetLooping(uint32_t source, bool looping) {
  alSourcei(source, AL_LOOPING, looping ? AL_TRUE : AL_FALSE);
}

void AudioDevice::Attach(uint32_t source, uint32_t buffer) {
  alSourcei(source, AL_BUFFER, static_cast<ALint>(buffer));
}

void AudioDevice::Queue(uint32_t source, uint32_t buffer) {
  alSourceQueueBuffers(source, 1, &buffer);
}

std::vector<uint32_t> AudioDevice::UnqueueProcessed(uint32_t source) {
  ALint processed = 0;
  alGetSourcei(source, AL_BUFFERS_PROCESSED, &processed);
  std::vector<uint32_t> buffers(static_cast<size_t>(std::max(processed, 0)));
  if (!buffers.empty()) alSourceUnqueueBuffers(source, processed, buffers.data());
  return buffers;
}

void AudioDevice::PlaceAtListener(uint32_t source) {
  alSourcei(source, AL_SOURCE_RELATIVE, AL_TRUE);
  alSource3f(source, AL_POSITION, 0.0f, 0.0f, 0.0f);
}

void AudioDevice::PlaceInWorld(uint32_t source, Vec3 position) {
  alSourcei(source, AL_SOURCE_RELATIVE, AL_FALSE);
  alSource3f(source, AL_POSITION, position.x, position.y, position.z);
}

void AudioDevice::SetListener(Vec3 position, Vec3 forward, Vec3 up) {
  alListener3f(AL_POSITION, position.x, position.y, position.z);
  const ALfloat orientation[6] = {forward.x, forward.y, forward.z, up.x, up.y, up.z};
  alListenerfv(AL_ORIENTATION, orientation);
}

void AudioDevice::Advance(float seconds) {
  if (pLoopback_ == nullptr || !(seconds > 0.0f)) return;
  static const auto render = reinterpret_cast<LPALCRENDERSAMPLESSOFT>(
      alcGetProcAddress(Device(pLoopback_), "alcRenderSamplesSOFT"));
  // A long hitch is not worth mixing through in full; a quarter second keeps lines moving.
  const int frames = static_cast<int>(std::min(seconds, 0.25f) * kOutputRate);
  scratch_.resize(static_cast<size_t>(frames) * 2);
  if (render != nullptr && frames > 0) render(Device(pLoopback_), scratch_.data(), frames);
}

}  // namespace grindle
