// Sprites and text, on screen (HUD, in render-target pixels, y down) or in the world (through
// gWVP, in the sprite's own plane: x right, y up). A quad is a glyph's quad (in line-height units)
// or the unit square; it is placed at gPosition and scaled by (gSpriteWidth, gSpriteHeight) and
// gFontScale, in pixels on screen and world units in the world. The overlay holds colour
// multiplied by alpha (source-over into a cleared target), which the composite divides out again.
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

vec2 PlacedCorner(vec2 corner) {
  vec2 size = vec2(gSpriteWidth, gSpriteHeight) * gFontScale;
#ifdef SCROLL
  size.x *= gWidthPercentage;
#endif
  return gPosition.xy + corner * size;
}

@vertex HudVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vec2 pixel = PlacedCorner(POSITION.xy);
  gl_Position = vec4(pixel.x / gScreenWidth * 2.0 - 1.0, 1.0 - pixel.y / gScreenHeight * 2.0, 0.0, 1.0);
  vTex = (gTexTransform * vec4(TEXCOORD, 0.0, 1.0)).xy;
}

@vertex WorldVS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec2 TEXCOORD;
out vec2 vTex;
void main() {
  vec2 local = PlacedCorner(POSITION.xy);
  gl_Position = gWVP * vec4(local.x, -local.y, 0.0, 1.0);
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
