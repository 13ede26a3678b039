#include "Graphics/RenderInterface/OpenGL/Particles/ParticleKinds.h"

#include <array>

#include "Graphics/Effects/EffectSlots.h"

namespace grindle::gfx {

namespace {

// Capacities leave room over the steady state each effect file's rates and lifetimes give (fire:
// 200 a second for up to 1.05 s; rain: 1200 a second for up to 0.8 s; bursts: their count).
// Durations exceed the longest lifetime in the files by a margin.
constexpr std::array<ParticleKindInfo, static_cast<size_t>(ParticleKind::kCount)> kKinds = {{
    {"Fire", 256, 0.0f, false},
    {"Explosion", 80, 2.5f, false},
    {"Rain", 1280, 0.0f, true},
    {"ExplosionSmall", 32, 1.5f, false},
    {"ExplosionMine", 64, 2.0f, false},
    {"Dust", 48, 0.0f, false},
    {"Blink", 16, 0.0f, false},
}};

}  // namespace

const ParticleKindInfo& KindInfo(ParticleKind kind) { return kKinds[static_cast<size_t>(kind)]; }

std::optional<ParticleKind> KindFromTypeName(std::string_view typeName) {
  for (size_t i = 0; i < kKinds.size(); ++i) {
    if (kKinds[i].typeName == typeName) return static_cast<ParticleKind>(i);
  }
  return std::nullopt;
}

ParticleEffect* KindEffect(EffectSlots& slots, ParticleKind kind) {
  switch (kind) {
    case ParticleKind::kFire:
      return slots.fire.get();
    case ParticleKind::kExplosion:
      return slots.explosion.get();
    case ParticleKind::kRain:
      return slots.rain.get();
    case ParticleKind::kExplosionSmall:
      return slots.explosionSmall.get();
    case ParticleKind::kExplosionMine:
      return slots.explosionMine.get();
    case ParticleKind::kDust:
      return slots.dust.get();
    case ParticleKind::kBlink:
      return slots.blink.get();
    case ParticleKind::kCount:
      break;
  }
  return nullptr;
}

}  // namespace grindle::gfx
