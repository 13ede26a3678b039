// Rain: streaks falling fast and slightly slanted by the emit direction (wind) over a box of sky
// around the emit point, which the renderer keeps above the eye.
@include Particles.fxh
@common
const float kEmitInterval = 1.0 / 1200.0;
const float kBurstCount = 0.0;
const float kLayer = 2.0;
const bool kAdditive = false;
const bool kStreaks = true;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  offset = vec3(r1.x * 15.0, 9.0 + 6.0 * r1.y, r1.z * 15.0);
  velocity = vec3(0.0, -24.0 - 4.0 * r2.x, 0.0) + gEmitDirW;
  size = 0.07 + 0.01 * r2.y;
  lifetime = 0.7 + 0.1 * r2.z;
}

vec3 Acceleration(vec3 velocity) { return vec3(0.0); }

float ParticleSize(float t, float startSize) { return startSize; }

vec4 ParticleColor(float t, float seed) {
  return vec4(0.75, 0.8, 0.9, 0.7 * smoothstep(0.0, 0.05, t) * (0.7 + 0.3 * seed));
}

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=1 depth=2
