// Explosion: a burst of fireballs thrown in every direction that slow, swell and burn out from
// white-yellow through orange to a dark red glow.
@include Particles.fxh
@common
const float kEmitInterval = 0.0;
const float kBurstCount = 64.0;
const float kLayer = 4.0;
const bool kAdditive = true;
const bool kStreaks = false;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  vec3 direction = normalize(r1.xyz + vec3(0.0, 0.35, 0.0) + vec3(1e-3));
  offset = direction * 0.3;
  velocity = direction * (5.0 + 4.0 * r2.x) + gEmitDirW * 3.0;
  size = 1.4 + 0.5 * r2.y;
  lifetime = 1.1 + 0.4 * r2.z;
}

// Air drag stops the fireballs quickly; a little buoyancy lifts what is left.
vec3 Acceleration(vec3 velocity) { return -velocity * 2.8 + vec3(0.0, 0.8, 0.0); }

float ParticleSize(float t, float startSize) { return startSize * (1.0 + 1.6 * sqrt(t)); }

vec4 ParticleColor(float t, float seed) {
  vec3 color = t < 0.25 ? mix(vec3(1.0, 0.95, 0.7), vec3(1.0, 0.55, 0.12), t / 0.25)
                        : mix(vec3(1.0, 0.55, 0.12), vec3(0.35, 0.06, 0.02), (t - 0.25) / 0.75);
  return vec4(color, (1.0 - t) * (0.75 + 0.25 * seed));
}

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=3 depth=2
