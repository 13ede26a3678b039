// Full-screen image passes: drawing a layer of the final composite, and the post effects of the
// chain. Every pass reads gTexture (and gTexture2, gGlowTexture or gRandomTexture where said) and
// writes the image it produces; texel sizes come from the textures themselves.
@common
uniform float gHue;          // radians of hue rotation
uniform float gDist;         // depth of field: focus depth (0..1)
uniform float gRange;        // depth of field: depth range that blurs fully
uniform float gBlendFactor;  // weight of the second image
uniform mat4 gWorldViewProj;
uniform sampler2D gTexture;
uniform sampler2D gTexture2;
uniform sampler2D gGlowTexture;
uniform sampler2D gRandomTexture;

@vertex VS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec3 NORMAL;
layout(location = 2) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vTex = TEXCOORD;
  gl_Position = gWorldViewProj * vec4(POSITION, 1.0);
}

// Layers hold colour multiplied by their alpha (the overlay's sprites are blended over a clear
// target); dividing it out lets the source-over composite apply the alpha exactly once. Opaque
// layers are unchanged.
@fragment DrawImagePS
in vec2 vTex;
out vec4 outColor;
void main() {
  vec4 texel = texture(gTexture, vTex);
  outColor = vec4(texel.a > 0.0 ? texel.rgb / texel.a : texel.rgb, texel.a);
}

@fragment DrawImageAlphaBlendPS
in vec2 vTex;
out vec4 outColor;
void main() {
  outColor = texture(gTexture, vTex);
  outColor.a *= gBlendFactor;
}

@fragment BlurPS
in vec2 vTex;
out vec4 outColor;
void main() {
#ifdef HORIZONTAL
  vec2 step = vec2(2.0 / float(textureSize(gTexture, 0).x), 0.0);
#else
  vec2 step = vec2(0.0, 2.0 / float(textureSize(gTexture, 0).y));
#endif
  const float weights[5] = float[](0.227027, 0.1945946, 0.1216216, 0.054054, 0.016216);
  vec4 sum = texture(gTexture, vTex) * weights[0];
  for (int i = 1; i < 5; ++i) {
    sum += texture(gTexture, vTex + step * float(i)) * weights[i];
    sum += texture(gTexture, vTex - step * float(i)) * weights[i];
  }
  outColor = vec4(sum.rgb, 1.0);
}

@fragment EdgePS
in vec2 vTex;
out vec4 outColor;
float Luma(vec2 uv) { return dot(texture(gTexture, uv).rgb, vec3(0.299, 0.587, 0.114)); }
void main() {
  vec2 t = 1.0 / vec2(textureSize(gTexture, 0));
  float tl = Luma(vTex + t * vec2(-1, -1)), tc = Luma(vTex + t * vec2(0, -1)), tr = Luma(vTex + t * vec2(1, -1));
  float ml = Luma(vTex + t * vec2(-1, 0)), mr = Luma(vTex + t * vec2(1, 0));
  float bl = Luma(vTex + t * vec2(-1, 1)), bc = Luma(vTex + t * vec2(0, 1)), br = Luma(vTex + t * vec2(1, 1));
  float gx = -tl - 2.0 * ml - bl + tr + 2.0 * mr + br;
  float gy = -tl - 2.0 * tc - tr + bl + 2.0 * bc + br;
  float edge = clamp(length(vec2(gx, gy)), 0.0, 1.0);
#ifdef OUTLINE
  outColor = vec4(texture(gTexture, vTex).rgb * (edge > 0.25 ? 0.0 : 1.0), 1.0);
#else
  outColor = vec4(vec3(edge), 1.0);
#endif
}

// The glow is added, and a sum past white is scaled back as a whole rather than clipped channel by
// channel: clipping would turn a bright blue towards cyan and an orange towards yellow.
@fragment GlowPS
in vec2 vTex;
out vec4 outColor;
void main() {
  vec3 sum = texture(gTexture, vTex).rgb + 1.5 * texture(gGlowTexture, vTex).rgb;
  outColor = vec4(sum / max(1.0, max(sum.r, max(sum.g, sum.b))), 1.0);
}

@fragment AddPS
in vec2 vTex;
out vec4 outColor;
void main() {
  outColor = vec4(texture(gTexture, vTex).rgb + gBlendFactor * texture(gTexture2, vTex).rgb, 1.0);
}

// gTexture sharp, gTexture2 blurred, gGlowTexture the scene depth.
@fragment DepthOfFieldPS
in vec2 vTex;
out vec4 outColor;
void main() {
  float depth = texture(gGlowTexture, vTex).r;
  float blur = clamp(abs(depth - gDist) / max(gRange, 0.0001), 0.0, 1.0);
  outColor = vec4(mix(texture(gTexture, vTex).rgb, texture(gTexture2, vTex).rgb, blur), 1.0);
}

@fragment HuePS
in vec2 vTex;
out vec4 outColor;
void main() {
  vec3 rgb = texture(gTexture, vTex).rgb;
  mat3 toYiq = mat3(0.299, 0.596, 0.211, 0.587, -0.274, -0.523, 0.114, -0.322, 0.312);
  mat3 toRgb = mat3(1.0, 1.0, 1.0, 0.956, -0.272, -1.106, 0.621, -0.647, 1.703);
  vec3 yiq = toYiq * rgb;
  float c = cos(gHue), s = sin(gHue);
  yiq.yz = vec2(c * yiq.y - s * yiq.z, s * yiq.y + c * yiq.z);
  outColor = vec4(clamp(toRgb * yiq, 0.0, 1.0), 1.0);
}

@fragment BrightPS
in vec2 vTex;
out vec4 outColor;
void main() {
  vec3 rgb = texture(gTexture, vTex).rgb;
  outColor = vec4(max(rgb - vec3(0.7), vec3(0.0)) / 0.3, 1.0);
}

// gTexture the image, gTexture2 its depth, gRandomTexture a noise tile that turns the samples.
// Pairs of samples on opposite sides: where the point lies behind the line between them (in
// linear depth) it sits in a crease and is darkened; flat or sloped surfaces lie on that line and
// stay as they are, and a jump of more than a few units (an outline against the distance) counts
// as no crease at all.
@fragment SsaoPS
in vec2 vTex;
out vec4 outColor;
float LinearDepth(vec2 uv) { return 1000.0 / (1000.0 - texture(gTexture2, uv).r * 999.0); }
void main() {
  vec2 size = vec2(textureSize(gTexture2, 0));
  float center = LinearDepth(vTex);
  vec2 noise = texture(gRandomTexture, vTex * size / 4.0).rg * 2.0 - 1.0;
  float occlusion = 0.0;
  for (int i = 0; i < 8; ++i) {
    float angle = float(i) * 0.392699;
    vec2 direction = reflect(vec2(cos(angle), sin(angle)), normalize(noise + vec2(0.0001)));
    vec2 offset = direction / size * (4.0 + 6.0 * float(i % 3));
    float crease = center - 0.5 * (LinearDepth(vTex + offset) + LinearDepth(vTex - offset));
    occlusion += smoothstep(0.001 * center, 0.01 * center, crease) * (1.0 - smoothstep(1.0, 3.0, crease));
  }
  outColor = vec4(texture(gTexture, vTex).rgb * (1.0 - occlusion / 8.0 * 0.7), 1.0);
}

@fragment BlackAndWhitePS
in vec2 vTex;
out vec4 outColor;
void main() {
  float luma = dot(texture(gTexture, vTex).rgb, vec3(0.299, 0.587, 0.114));
  outColor = vec4(vec3(luma > 0.5 ? 1.0 : 0.0), 1.0);
}

@fragment GreyScalePS
in vec2 vTex;
out vec4 outColor;
void main() {
  float luma = dot(texture(gTexture, vTex).rgb, vec3(0.299, 0.587, 0.114));
  outColor = vec4(vec3(luma), 1.0);
}

@fragment SepiaPS
in vec2 vTex;
out vec4 outColor;
void main() {
  vec3 c = texture(gTexture, vTex).rgb;
  outColor = vec4(clamp(vec3(dot(c, vec3(0.393, 0.769, 0.189)), dot(c, vec3(0.349, 0.686, 0.168)),
                             dot(c, vec3(0.272, 0.534, 0.131))), 0.0, 1.0), 1.0);
}

// Composite layers blend over what is there; effect passes overwrite their whole target.
@technique DrawImageTech
pass P0 vertex=VS fragment=DrawImagePS raster=2 blend=1 depth=1
@technique DrawImageAlphaBlendTech
pass P0 vertex=VS fragment=DrawImageAlphaBlendPS raster=2 blend=1 depth=1
@technique BlurHorizontalTech
pass P0 vertex=VS fragment=BlurPS define=HORIZONTAL raster=2 blend=0 depth=1
@technique BlurVerticalTech
pass P0 vertex=VS fragment=BlurPS raster=2 blend=0 depth=1
@technique SobelTech
pass P0 vertex=VS fragment=EdgePS raster=2 blend=0 depth=1
@technique GlowTech
pass P0 vertex=VS fragment=GlowPS raster=2 blend=0 depth=1
@technique OutlineTech
pass P0 vertex=VS fragment=EdgePS define=OUTLINE raster=2 blend=0 depth=1
@technique AddTech
pass P0 vertex=VS fragment=AddPS raster=2 blend=0 depth=1
@technique DOFTech
pass P0 vertex=VS fragment=DepthOfFieldPS raster=2 blend=0 depth=1
@technique HueTech
pass P0 vertex=VS fragment=HuePS raster=2 blend=0 depth=1
@technique BloomTech
pass P0 vertex=VS fragment=BrightPS raster=2 blend=0 depth=1
@technique SSAOTech
pass P0 vertex=VS fragment=SsaoPS raster=2 blend=0 depth=1
@technique BlackAndWhiteTech
pass P0 vertex=VS fragment=BlackAndWhitePS raster=2 blend=0 depth=1
@technique GreyScaleTech
pass P0 vertex=VS fragment=GreyScalePS raster=2 blend=0 depth=1
@technique SepiaTech
pass P0 vertex=VS fragment=SepiaPS raster=2 blend=0 depth=1
