// The seven particle kinds: the `Type` text that names each in a `ParticleSystem` component, the
// effect slot that draws it, how many particles its buffers hold and how it lives (continuous, or
// one burst that ends by itself). Pure data; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace grindle::gfx {

class ParticleEffect;
struct EffectSlots;

enum class ParticleKind : uint32_t {
  kFire,
  kExplosion,
  kRain,
  kExplosionSmall,
  kExplosionMine,
  kDust,
  kBlink,
  kCount
};

struct ParticleKindInfo {
  std::string_view typeName;  // the component's `Type`
  uint32_t capacity;          // particles the buffers hold, the emitter included
  // Seconds after (re)starting by which every particle of a one-shot kind has died; 0 for the
  // continuous kinds. Past it the system is finished and costs nothing.
  float oneShotDuration;
  bool followsEye;  // emits around the eye instead of the object (rain)
};

const ParticleKindInfo& KindInfo(ParticleKind kind);
// The kind whose `Type` is exactly `typeName`, or none.
std::optional<ParticleKind> KindFromTypeName(std::string_view typeName);
// The effect slot of the kind; null until its effect set is loaded.
ParticleEffect* KindEffect(EffectSlots& slots, ParticleKind kind);

}  // namespace grindle::gfx
