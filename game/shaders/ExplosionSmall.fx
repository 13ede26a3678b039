// Small explosion: a quick pop of a few fireballs, half the size and life of the large one.
@include Particles.fxh
@common
const float kEmitInterval = 0.0;
const float kBurstCount = 24.0;
const float kLayer = 4.0;
const bool kAdditive = true;
const bool kStreaks = false;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  vec3 direction = normalize(r1.xyz + vec3(0.0, 0.4, 0.0) + vec3(1e-3));
  offset = direction * 0.1;
  velocity = direction * (2.5 + 1.5 * r2.x) + gEmitDirW * 2.0;
  size = 0.6 + 0.2 * r2.y;
  lifetime = 0.55 + 0.2 * r2.z;
}

vec3 Acceleration(vec3 velocity) { return -velocity * 3.5 + vec3(0.0, 0.5, 0.0); }

float ParticleSize(float t, float startSize) { return startSize * (1.0 + 1.2 * sqrt(t)); }

vec4 ParticleColor(float t, float seed) {
  vec3 color = mix(vec3(1.0, 0.9, 0.55), vec3(0.8, 0.2, 0.05), t);
  return vec4(color, (1.0 - t) * (0.8 + 0.2 * seed));
}

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=3 depth=2
