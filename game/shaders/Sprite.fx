// Sprites and text, on screen (HUD, in pixels) or in the world (billboards through gWVP). The
// sprite manager draws with these techniques; quads are unit squares in the position-texture layout.
@common
uniform mat4 gWVP;
uniform vec4 gColor;
uniform sampler2D gFontTexture;
uniform vec3 gPosition;
uniform float gScreenWidth;
uniform float gScreenHeight;
uniform float gFontScale;
uniform float gSpriteWidth;
uniform float gSpriteHeight;
uniform float gWidthPercentage;
uniform mat4 gTexTransform;

@vertex HudVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vec2 size = vec2(gSpriteWidth, gSpriteHeight) * max(gFontScale, 1.0);
#ifdef SCROLL
  size.x *= gWidthPercentage;
#endif
  vec2 pixel = gPosition.xy + POSITION.xy * size;
  gl_Position = vec4(pixel.x / gScreenWidth * 2.0 - 1.0, 1.0 - pixel.y / gScreenHeight * 2.0, 0.0, 1.0);
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
}

@vertex WorldVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  gl_Position = gWVP * vec4(POSITION * vec3(gSpriteWidth, gSpriteHeight, 1.0) + gPosition, 1.0);
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
}

@fragment PS
in vec2 vTex;
out vec4 outColor;
void main() {
  vec4 texel = texture(gFontTexture, vTex);
#ifdef TEXT
  texel = vec4(1.0, 1.0, 1.0, texel.a);
#endif
  outColor = texel * gColor;
}

@technique TextHUDTech
pass P0 vertex=HudVS fragment=PS define=TEXT raster=2 blend=1 depth=1
@technique TextWorldTech
pass P0 vertex=WorldVS fragment=PS define=TEXT raster=2 blend=1 depth=2
@technique SpriteHUDTech
pass P0 vertex=HudVS fragment=PS raster=2 blend=1 depth=1
@technique SpriteWorldTech
pass P0 vertex=WorldVS fragment=PS raster=2 blend=1 depth=2
@technique SpriteHUDScrollTech
pass P0 vertex=HudVS fragment=PS define=SCROLL raster=2 blend=1 depth=1
