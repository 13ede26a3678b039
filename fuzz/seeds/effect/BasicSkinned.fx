// Lit skinned models: five bone influences per vertex, the same maps, lights, shadows and fog as
// basic.fx, plus the pass that draws a model into the glow map.
@common
@include Lighting.fxh
uniform mat4 gWorldViewProj;
uniform mat4 gWorldViewProjTex;
uniform mat4 gWorld;
uniform mat4 gWorldInvTranspose;
uniform mat4 gBoneTransforms[96];
uniform sampler2D gSsaoMap;
uniform vec4 gGlowColor;

@vertex VS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 NORMAL;
layout(location = 2) in vec2 TEXCOORD;
layout(location = 3) in vec3 TANGENT;
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
out vec3 vPositionW;
out vec3 vNormalW;
out vec3 vTangentW;
out vec2 vTex;
out vec4 vSsaoPosH;
void main() {
  mat4 skin = WEIGHTSA * gBoneTransforms[BONEINDICESA] + WEIGHTSB * gBoneTransforms[BONEINDICESB] +
              WEIGHTSC * gBoneTransforms[BONEINDICESC] + WEIGHTSD * gBoneTransforms[BONEINDICESD] +
              WEIGHTSE * gBoneTransforms[BONEINDICESE];
  vec4 position = skin * vec4(POSITION, 1.0);
  vPositionW = (gWorld * position).xyz;
  vNormalW = mat3(gWorldInvTranspose) * (mat3(skin) * NORMAL);
  vTangentW = mat3(gWorld) * (mat3(skin) * TANGENT);
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
  vSsaoPosH = gWorldViewProjTex * position;
  gl_Position = gWorldViewProj * position;
}

@fragment PS
in vec3 vPositionW;
in vec3 vNormalW;
in vec3 vTangentW;
in vec2 vTex;
in vec4 vSsaoPosH;
out vec4 outColor;
void main() {
  vec4 color = ShadeSurface(vPositionW, vNormalW, vTangentW, vTex, 1.0);
  vec2 ssaoUv = vSsaoPosH.xy / vSsaoPosH.w;
  float access = textureSize(gSsaoMap, 0).x > 1 ? texture(gSsaoMap, ssaoUv).r : 1.0;
  outColor = vec4(color.rgb * mix(0.6, 1.0, access), color.a);
}

@fragment GlowPS
in vec3 vPositionW;
in vec3 vNormalW;
in vec3 vTangentW;
in vec2 vTex;
in vec4 vSsaoPosH;
out vec4 outColor;
void main() { outColor = vec4(gGlowColor.rgb, 1.0) * texture(gDiffuseMap, vTex).a; }

@technique D3D10_Tex_Spec_Norm
pass P0 vertex=VS fragment=PS define=USE_TEXTURE,USE_SPECULAR_MAP,USE_NORMAL_MAP
@technique D3D10_Tex_Norm
pass P0 vertex=VS fragment=PS define=USE_TEXTURE,USE_NORMAL_MAP
@technique D3D10_Tex_Spec
pass P0 vertex=VS fragment=PS define=USE_TEXTURE,USE_SPECULAR_MAP
@technique D3D10_NoTextures
pass P0 vertex=VS fragment=PS
@technique D3D10_Tex
pass P0 vertex=VS fragment=PS define=USE_TEXTURE
@technique D3D10_ToGlowMap
pass P0 vertex=VS fragment=GlowPS
