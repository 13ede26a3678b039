// Mine explosion: a flat shock ring racing out along the ground with a column of sparks thrown up
// from its centre; green-white at first, as the mines are drawn, then orange and gone.
@include Particles.fxh
@common
const float kEmitInterval = 0.0;
const float kBurstCount = 56.0;
const float kLayer = 4.0;
const bool kAdditive = true;
const bool kStreaks = false;

void SpawnParticle(vec4 r1, vec4 r2, out vec3 offset, out vec3 velocity, out float size,
                   out float lifetime) {
  // Three in four join the ring; the rest go up.
  if (r2.w > -0.5) {
    vec2 around = normalize(r1.xz + vec2(1e-3));
    offset = vec3(around.x, 0.1, around.y) * 0.3;
    velocity = vec3(around.x, 0.08, around.y) * (9.0 + 2.0 * r2.x);
    size = 0.9 + 0.3 * r2.y;
  } else {
    offset = vec3(0.0, 0.2, 0.0);
    velocity = vec3(r1.x * 1.5, 7.0 + 2.0 * r2.x, r1.z * 1.5) + gEmitDirW * 2.0;
    size = 0.5 + 0.2 * r2.y;
  }
  lifetime = 0.9 + 0.3 * r2.z;
}

vec3 Acceleration(vec3 velocity) { return -velocity * 2.5 + vec3(0.0, -3.0, 0.0); }

float ParticleSize(float t, float startSize) { return startSize * (1.0 + t); }

vec4 ParticleColor(float t, float seed) {
  vec3 color = t < 0.3 ? mix(vec3(0.85, 1.0, 0.75), vec3(1.0, 0.6, 0.15), t / 0.3)
                       : mix(vec3(1.0, 0.6, 0.15), vec3(0.3, 0.08, 0.02), (t - 0.3) / 0.7);
  return vec4(color, (1.0 - t) * (0.8 + 0.2 * seed));
}

@technique StreamOutTech
pass P0 vertex=StreamVS geometry=StreamGS fragment=StreamPS
@technique DrawTech
pass P0 vertex=DrawVS geometry=DrawGS fragment=DrawPS raster=2 blend=3 depth=2
