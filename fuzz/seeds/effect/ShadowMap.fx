// Depth-only passes into the shadow maps. The "Tess" variants do not subdivide; they displace each
// vertex along its normal by the height map, strongest near the eye, as the tessellated meshes
// they stand in for would.
@common
uniform mat4 gViewProj;
uniform mat4 gWorldViewProj;
uniform mat4 gWorld;
uniform mat4 gWorldInvTranspose;
uniform mat4 gTexTransform;
uniform vec3 gEyePosW;
uniform float gHeightScale;
uniform float gMaxTessDistance;
uniform float gMinTessDistance;
uniform float gMinTessFactor;
uniform float gMaxTessFactor;
uniform sampler2D gDiffuseMap;
uniform mat4 gBoneTransforms[96];

@vertex VS
layout(location = 0) in vec3 POSITION;
layout(location = 2) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
  gl_Position = gWorldViewProj * vec4(POSITION, 1.0);
}

@vertex TessVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 NORMAL;
layout(location = 2) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
  vec3 positionW = (gWorld * vec4(POSITION, 1.0)).xyz;
  vec3 normalW = normalize(mat3(gWorldInvTranspose) * NORMAL);
  float d = distance(positionW, gEyePosW);
  float near = clamp((gMinTessDistance - d) / max(gMinTessDistance - gMaxTessDistance, 0.0001), 0.0, 1.0);
  float factor = mix(gMinTessFactor, gMaxTessFactor, near) / max(gMaxTessFactor, 1.0);
  float height = textureLod(gDiffuseMap, vTex, 0.0).a - 1.0;
  gl_Position = gViewProj * vec4(positionW + normalW * gHeightScale * height * factor, 1.0);
}

@vertex InstancedVS
layout(location = 0) in vec3 POSITION;
layout(location = 2) in vec2 TEXCOORD;
layout(location = 4) in mat4 WORLD;
out vec2 vTex;
void main() {
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
  gl_Position = gViewProj * (WORLD * vec4(POSITION, 1.0));
}

@vertex SkinnedVS
layout(location = 0) in vec3 POSITION;
layout(location = 2) in vec2 TEXCOORD;
layout(location = 4) in float WEIGHTSA;
layout(location = 5) in float WEIGHTSB;
layout(location = 6) in float WEIGHTSC;
layout(location = 7) in float WEIGHTSD;
layout(location = 8) in float WEIGHTSE;
layout(location = 9) in uint BONEINDICESA;
layout(location = 10) in uint BONEINDICESB;
layout(location = 11) in uint BONEINDICESC;
layout(location = 12) in uint BONEINDICESD;
layout(location = 13) in uint BONEINDICESE;
out vec2 vTex;
void main() {
  vec4 p = vec4(POSITION, 1.0);
  vec4 skinned = WEIGHTSA * (gBoneTransforms[BONEINDICESA] * p) + WEIGHTSB * (gBoneTransforms[BONEINDICESB] * p) +
                 WEIGHTSC * (gBoneTransforms[BONEINDICESC] * p) + WEIGHTSD * (gBoneTransforms[BONEINDICESD] * p) +
                 WEIGHTSE * (gBoneTransforms[BONEINDICESE] * p);
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
  gl_Position = gWorldViewProj * vec4(skinned.xyz, 1.0);
}

@fragment PS
in vec2 vTex;
void main() {}

@fragment AlphaClipPS
in vec2 vTex;
void main() {
  if (texture(gDiffuseMap, vTex).a < 0.15) discard;
}

@technique BuildShadowMapTech
pass P0 vertex=VS fragment=PS raster=3
@technique BuildShadowMapTechInstanced
pass P0 vertex=InstancedVS fragment=PS raster=3
@technique BuildShadowMapTechSkinned
pass P0 vertex=SkinnedVS fragment=PS raster=3
@technique BuildShadowMapAlphaClipTech
pass P0 vertex=VS fragment=AlphaClipPS raster=3
@technique TessBuildShadowMapTech
pass P0 vertex=TessVS fragment=PS raster=3
@technique TessBuildShadowMapAlphaClipTech
pass P0 vertex=TessVS fragment=AlphaClipPS raster=3
