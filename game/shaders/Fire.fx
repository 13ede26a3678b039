// Fire: flames born on a small disc that rise, narrow and cool from yellow to red, flickering.
@include Particles.fxh
@common
const float kEmitInterval = 1.0 / 200.0;
const float kBurstCount = 0.0;
const float kLayer = 1.0;
const bool kAdditive = true;
const bool kStreaks = false;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  offset = vec3(r1.x, 0.0, r1.z) * 0.45;
  velocity = vec3(r2.x * 0.3, 2.0 + r2.y * 0.5, r2.z * 0.3) + gEmitDirW;
  size = 1.3 + r1.w * 0.3;
  lifetime = 0.85 + r2.w * 0.2;
}

// Hot gas rises faster as it goes and is pulled back towards the flame's axis.
vec3 Acceleration(vec3 velocity) { return vec3(-velocity.x * 1.5, 1.2, -velocity.z * 1.5); }

float ParticleSize(float t, float startSize) { return startSize * (1.0 - 0.7 * t); }

vec4 ParticleColor(float t, float seed) {
  vec3 hot = vec3(1.0, 0.85, 0.35);
  vec3 cool = vec3(0.9, 0.18, 0.04);
  float flicker = 0.8 + 0.2 * sin(gGameTime * 23.0 + seed * 40.0);
  float fade = smoothstep(0.0, 0.1, t) * (1.0 - t);
  return vec4(mix(hot, cool, t) * flicker, fade * 0.3);
}

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=3 depth=2
