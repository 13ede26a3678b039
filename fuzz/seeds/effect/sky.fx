// The sky dome: the cube map looked up along the direction of each dome vertex, pushed to the far
// plane so it never hides the scene.
@common
uniform mat4 gWorldViewProj;
uniform samplerCube gCubeMap;

@vertex VS
layout(location = 0) in vec3 POSITION;
out vec3 vDirection;
void main() {
  vDirection = POSITION;
  gl_Position = (gWorldViewProj * vec4(POSITION, 1.0)).xyww;
}

@fragment PS
in vec3 vDirection;
out vec4 outColor;
void main() { outColor = texture(gCubeMap, vDirection); }

@technique SkyTech
pass P0 vertex=VS fragment=PS raster=2 depth=2
