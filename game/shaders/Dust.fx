// Dust: brown-grey puffs kicked up at the feet that drift, swell and thin out.
@include Particles.fxh
@common
const float kEmitInterval = 0.06;
const float kBurstCount = 0.0;
const float kLayer = 0.0;
const bool kAdditive = false;
const bool kStreaks = false;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  offset = vec3(r1.x * 0.3, 0.1, r1.z * 0.3);
  velocity = vec3(r2.x * 0.7, 0.45 + 0.25 * r2.y, r2.z * 0.7) + gEmitDirW;
  size = 0.45 + 0.15 * r1.w;
  lifetime = 1.0 + 0.3 * r2.w;
}

vec3 Acceleration(vec3 velocity) { return -velocity * 1.8; }

float ParticleSize(float t, float startSize) { return startSize * (1.0 + 1.8 * t); }

vec4 ParticleColor(float t, float seed) {
  vec3 color = mix(vec3(0.6, 0.52, 0.4), vec3(0.7, 0.66, 0.6), seed);
  return vec4(color, 0.6 * smoothstep(0.0, 0.1, t) * (1.0 - t));
}

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=1 depth=2
