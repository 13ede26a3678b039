// The glow map: glowing objects in their glow colour, masked by their texture's alpha, on black.
@common
uniform mat4 gWorldViewProj;
uniform sampler2D gDiffuseMap;
uniform mat4 gBoneTransforms[96];
uniform vec4 gGlowColor;

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
  vTex = TEXCOORD;
  gl_Position = gWorldViewProj * vec4(skinned.xyz, 1.0);
}

@vertex VS
layout(location = 0) in vec3 POSITION;
layout(location = 2) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vTex = TEXCOORD;
  gl_Position = gWorldViewProj * vec4(POSITION, 1.0);
}

@fragment PS
in vec2 vTex;
out vec4 outColor;
void main() {
  outColor = vec4(gGlowColor.rgb, 1.0) * texture(gDiffuseMap, vTex).a;
}

@technique D3D10_MainTech
pass P0 vertex=SkinnedVS fragment=PS
@technique D3D10_NonSkinnedTech
pass P0 vertex=VS fragment=PS
