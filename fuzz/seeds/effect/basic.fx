// Lit, textured meshes: one technique per combination of maps a material has, three directional
// and two spot lights with shadow maps, and distance fog.
@common
@include Lighting.fxh
uniform mat4 gWorldViewProj;
uniform mat4 gWorld;
uniform mat4 gWorldInvTranspose;
uniform float gHasShadow;

@vertex VS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 NORMAL;
layout(location = 2) in vec2 TEXCOORD;
layout(location = 3) in vec3 TANGENT;
out vec3 vPositionW;
out vec3 vNormalW;
out vec3 vTangentW;
out vec2 vTex;
void main() {
  vPositionW = (gWorld * vec4(POSITION, 1.0)).xyz;
  vNormalW = mat3(gWorldInvTranspose) * NORMAL;
  vTangentW = mat3(gWorld) * TANGENT;
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
  gl_Position = gWorldViewProj * vec4(POSITION, 1.0);
}

@fragment PS
in vec3 vPositionW;
in vec3 vNormalW;
in vec3 vTangentW;
in vec2 vTex;
out vec4 outColor;
void main() {
  outColor = ShadeSurface(vPositionW, vNormalW, vTangentW, vTex, gHasShadow);
}

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
