// The audio system: plays sound effects, voice-over lines and music, all loaded at Start from the
// three audio folders and driven afterwards by messages only (see docs/audio.md for each one).
// The start-up code creates it, calls its life-cycle slots on the main thread and destroys it last;
// the device is released on destruction. Its Start prints no life-cycle line.
#pragma once

#include <memory>
#include <string>

#include "Core/MessageFunction.h"
#include "Core/Messages/RouteTable.h"
#include "Core/SystemBase.h"

namespace grindle {

class AudioSys;

class AudioInterface final : public SystemBase {
 public:
  // `assetRoot` is prepended to "Assets/Audio/..." (empty: the working directory).
  explicit AudioInterface(std::string assetRoot = "");
  ~AudioInterface() override;

  void Update(float dt) override;

  // Null before Start. For diagnostics and tests: what is loaded and playing.
  AudioSys* Audio() const { return pAudio_.get(); }

 private:
  void OnStart() override;
  void OnExit() override;

  // What the audio system listens to, in order, under the owner "Audio".
  static const msg::RouteTable<AudioInterface>& Routes();
  void OnPlaySong(MessageArgs args);
  void OnPlaySound(MessageArgs args);
  void OnPlaySoundAt(MessageArgs args);
  void OnPlayVO(MessageArgs args);
  void OnListener(MessageArgs args);
  // Menus and loading screens must never stay silent after a pause.
  void ResumeOnMenuLevels();

  std::string sAssetRoot_;
  std::unique_ptr<AudioSys> pAudio_;
};

}  // namespace grindle
