// The GPU particle system every particle effect file shares. Include it first, then give in a second
// @common the kind's constants and functions:
//   kEmitInterval (seconds per new particle), kBurstCount (0: emit for ever; otherwise the total,
//   after which the emitter ends), kLayer (texture array layer), kAdditive, kStreaks (stretch along
//   the velocity, for rain), SpawnParticle, Acceleration, ParticleSize and ParticleColor.
// One vertex is one particle (TYPE 1) or the emitter (TYPE 0, always the buffer's first vertex):
// POSITION where it was born (the emitter: unused), CURPOSITION where it is, VELOCITY (the emitter:
// x counts particles emitted), SIZE (size at birth, lifetime), AGE (the emitter: time not yet spent
// on emission), ROTANGLE (the quad's turn; its fraction seeds per-particle variation).
// StreamOutTech ages and moves particles and emits new ones into the transform feedback buffer;
// DrawTech expands the live ones into quads facing the eye.
@common
uniform mat4 gViewProj;
uniform float gGameTime;
uniform float gTimeStep;
uniform vec3 gEyePosW;
uniform vec3 gEmitPosW;
uniform vec3 gEmitDirW;
uniform sampler2DArray gTexArray;
uniform sampler1D gRandomTex;

const uint kEmitterType = 0u;
const uint kParticleType = 1u;
// New particles one emitter may add in a single step; a burst larger than this takes a few steps.
const int kMaxEmitPerStep = 24;

// Four values in -1..1, different for every offset and every moment of the system's clock.
vec4 RandomAt(float offset) { return texture(gRandomTex, fract(gGameTime * 0.6180339 + offset)); }

@vertex StreamVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 CURPOSITION;
layout(location = 2) in vec3 VELOCITY;
layout(location = 3) in vec2 SIZE;
layout(location = 4) in float AGE;
layout(location = 5) in float ROTANGLE;
layout(location = 6) in uint TYPE;
out vec3 vsPosition;
out vec3 vsCurPosition;
out vec3 vsVelocity;
out vec2 vsSize;
out float vsAge;
out float vsRotAngle;
flat out uint vsType;
void main() {
  vsPosition = POSITION;
  vsCurPosition = CURPOSITION;
  vsVelocity = VELOCITY;
  vsSize = SIZE;
  vsAge = AGE;
  vsRotAngle = ROTANGLE;
  vsType = TYPE;
}

@geometry StreamGS
layout(points) in;
layout(points, max_vertices = 25) out;
in vec3 vsPosition[];
in vec3 vsCurPosition[];
in vec3 vsVelocity[];
in vec2 vsSize[];
in float vsAge[];
in float vsRotAngle[];
flat in uint vsType[];
layout(xfb_buffer = 0, xfb_stride = 56) out;
layout(xfb_offset = 0) out vec3 soPosition;
layout(xfb_offset = 12) out vec3 soCurPosition;
layout(xfb_offset = 24) out vec3 soVelocity;
layout(xfb_offset = 36) out vec2 soSize;
layout(xfb_offset = 44) out float soAge;
layout(xfb_offset = 48) out float soRotAngle;
layout(xfb_offset = 52) flat out uint soType;

void Put(vec3 position, vec3 current, vec3 velocity, vec2 size, float age, float angle, uint type) {
  soPosition = position;
  soCurPosition = current;
  soVelocity = velocity;
  soSize = size;
  soAge = age;
  soRotAngle = angle;
  soType = type;
  EmitVertex();
  EndPrimitive();
}

void main() {
  float age = vsAge[0] + gTimeStep;
  if (vsType[0] == kParticleType) {
    if (age >= vsSize[0].y) return;
    vec3 velocity = vsVelocity[0] + Acceleration(vsVelocity[0]) * gTimeStep;
    Put(vsPosition[0], vsCurPosition[0] + velocity * gTimeStep, velocity, vsSize[0], age,
        vsRotAngle[0], kParticleType);
    return;
  }
  float emitted = vsVelocity[0].x;
  int due = kEmitInterval > 0.0 ? int(age / kEmitInterval) : kMaxEmitPerStep;
  due = min(due, kMaxEmitPerStep);
  if (kBurstCount > 0.0) due = min(due, int(kBurstCount - emitted));
  if (kEmitInterval > 0.0) age -= float(due) * kEmitInterval;
  emitted += float(due);
  // The emitter goes first so that a full buffer drops new particles, never the emitter.
  if (kBurstCount <= 0.0 || emitted < kBurstCount) {
    Put(vsPosition[0], gEmitPosW, vec3(emitted, 0.0, 0.0), vec2(0.0), age, 0.0, kEmitterType);
  }
  for (int i = 0; i < due; ++i) {
    float slot = (emitted - float(due) + float(i)) * 0.0731;
    vec4 r1 = RandomAt(slot);
    vec4 r2 = RandomAt(slot + 0.5);
    vec3 offset;
    vec3 velocity;
    float size;
    float lifetime;
    SpawnParticle(r1, r2, offset, velocity, size, lifetime);
    vec3 born = gEmitPosW + offset;
    Put(born, born, velocity, vec2(size, lifetime), 0.0, r2.w * 3.14159, kParticleType);
  }
}

@fragment StreamPS
out vec4 outColor;
void main() { outColor = vec4(0.0); }

@vertex DrawVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 CURPOSITION;
layout(location = 2) in vec3 VELOCITY;
layout(location = 3) in vec2 SIZE;
layout(location = 4) in float AGE;
layout(location = 5) in float ROTANGLE;
layout(location = 6) in uint TYPE;
out vec3 vsCurPosition;
out vec3 vsVelocity;
out vec2 vsSize;
out float vsAge;
out float vsRotAngle;
flat out uint vsType;
void main() {
  vsCurPosition = CURPOSITION;
  vsVelocity = VELOCITY;
  vsSize = SIZE;
  vsAge = AGE;
  vsRotAngle = ROTANGLE;
  vsType = TYPE;
}

@geometry DrawGS
layout(points) in;
layout(triangle_strip, max_vertices = 4) out;
in vec3 vsCurPosition[];
in vec3 vsVelocity[];
in vec2 vsSize[];
in float vsAge[];
in float vsRotAngle[];
flat in uint vsType[];
out vec2 gsTex;
out vec4 gsColor;
void main() {
  if (vsType[0] != kParticleType) return;
  vec3 center = vsCurPosition[0];
  float t = clamp(vsAge[0] / vsSize[0].y, 0.0, 1.0);
  float seed = fract(abs(vsRotAngle[0]) * 7.31);
  float halfSize = 0.5 * ParticleSize(t, vsSize[0].x);
  vec3 look = normalize(gEyePosW - center);
  vec3 right;
  vec3 up;
  if (kStreaks) {
    // A streak lies along its velocity and turns about it to face the eye.
    up = normalize(vsVelocity[0] + vec3(0.0, 1e-4, 0.0));
    right = normalize(cross(up, look) + vec3(1e-4, 0.0, 0.0));
    up *= 6.0;
  } else {
    vec3 worldUp = abs(look.y) > 0.99 ? vec3(0.0, 0.0, 1.0) : vec3(0.0, 1.0, 0.0);
    right = normalize(cross(worldUp, look));
    up = cross(look, right);
    float c = cos(vsRotAngle[0] + vsAge[0] * (seed - 0.5) * 2.0);
    float s = sin(vsRotAngle[0] + vsAge[0] * (seed - 0.5) * 2.0);
    vec3 turnedRight = c * right + s * up;
    up = c * up - s * right;
    right = turnedRight;
  }
  vec4 color = ParticleColor(t, seed);
  const vec2 corners[4] = vec2[](vec2(-1, 1), vec2(-1, -1), vec2(1, 1), vec2(1, -1));
  for (int i = 0; i < 4; ++i) {
    vec3 corner = center + (corners[i].x * right + corners[i].y * up) * halfSize;
    gl_Position = gViewProj * vec4(corner, 1.0);
    gsTex = vec2(corners[i].x, -corners[i].y) * 0.5 + 0.5;
    gsColor = color;
    EmitVertex();
  }
  EndPrimitive();
}

@fragment DrawPS
in vec2 gsTex;
in vec4 gsColor;
out vec4 outColor;
void main() {
  vec4 color = texture(gTexArray, vec3(gsTex, kLayer)) * gsColor;
  // Additive kinds add light in proportion to their coverage; the others blend over the scene.
  outColor = kAdditive ? vec4(color.rgb * color.a, color.a) : color;
}
