// Blink: golden four-pointed sparkles that pop up around a pick-up, turn and wink out.
@include Particles.fxh
@common
const float kEmitInterval = 0.09;
const float kBurstCount = 0.0;
const float kLayer = 3.0;
const bool kAdditive = true;
const bool kStreaks = false;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  offset = r1.xyz * vec3(0.8, 0.6, 0.8);
  velocity = vec3(0.0, 0.3, 0.0) + gEmitDirW;
  size = 0.6 + 0.3 * r2.x;
  lifetime = 0.45 + 0.15 * r2.y;
}

vec3 Acceleration(vec3 velocity) { return vec3(0.0); }

// Grows and shrinks once over its life.
float ParticleSize(float t, float startSize) { return startSize * sin(3.14159 * t); }

vec4 ParticleColor(float t, float seed) { return vec4(1.0, 0.92, 0.55 + 0.3 * seed, 1.0); }

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=3 depth=2
