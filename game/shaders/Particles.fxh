// Shared by the particle effect files, which set kParticleTint in their @common before including
// this: the update pass ages particles along their velocity, the draw pass shows each as a point
// sprite from the texture array, fading with age.
@common
uniform mat4 gViewProj;
uniform float gGameTime;
uniform float gTimeStep;
uniform vec3 gEyePosW;
uniform vec3 gEmitPosW;
uniform vec3 gEmitDirW;
uniform sampler2DArray gTexArray;
uniform sampler1D gRandomTex;

@vertex UpdateVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 CURPOSITION;
layout(location = 2) in vec3 VELOCITY;
layout(location = 3) in vec2 SIZE;
layout(location = 4) in float AGE;
layout(location = 5) in float ROTANGLE;
layout(location = 6) in uint TYPE;
out vec3 vPosition;
out vec2 vSize;
out float vAge;
out float vRotation;
void main() {
  vec3 jitter = texture(gRandomTex, gGameTime + float(gl_VertexID) * 0.01).xyz * 0.1;
  vAge = AGE + gTimeStep;
  // Emitters (type 0) stay at the emit point plus their offset; particles fly on.
  vPosition = TYPE == 0u ? gEmitPosW + POSITION : CURPOSITION + (VELOCITY + gEmitDirW + jitter) * gTimeStep;
  vSize = SIZE * (1.0 + 0.5 * gTimeStep);
  vRotation = ROTANGLE + gTimeStep;
  gl_Position = vec4(vPosition, 1.0);
}

@vertex DrawVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 CURPOSITION;
layout(location = 2) in vec3 VELOCITY;
layout(location = 3) in vec2 SIZE;
layout(location = 4) in float AGE;
layout(location = 5) in float ROTANGLE;
layout(location = 6) in uint TYPE;
out float vAge;
void main() {
  vAge = AGE;
  gl_Position = gViewProj * vec4(CURPOSITION, 1.0);
  gl_PointSize = SIZE.x * 200.0 / max(distance(CURPOSITION, gEyePosW), 1.0);
}

@fragment UpdatePS
in vec3 vPosition;
in vec2 vSize;
in float vAge;
in float vRotation;
out vec4 outColor;
void main() { outColor = vec4(vPosition, vAge + vSize.x + vRotation); }

@fragment DrawPS
in float vAge;
out vec4 outColor;
void main() {
  vec4 texel = texture(gTexArray, vec3(gl_PointCoord, 0.0));
  outColor = texel * kParticleTint * vec4(1.0, 1.0, 1.0, clamp(1.0 - vAge, 0.0, 1.0));
}

// The update pass only makes sense captured by transform feedback: it never reaches a target.
@technique StreamOutTech
pass P0 vertex=UpdateVS fragment=UpdatePS
@technique DrawTech
pass P0 vertex=DrawVS fragment=DrawPS blend=3 depth=2
