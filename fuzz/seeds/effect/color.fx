// Flat-coloured lines and shapes (debug drawing): the vertex colour, or gColor when it is set.
@common
uniform mat4 gWVP;
uniform vec4 gColor;

@vertex VS
layout(location = 0) in vec3 POSITION;
layout(location = 1) in vec4 COLOR;
out vec4 vColor;
void main() {
  vColor = any(notEqual(gColor, vec4(0.0))) ? gColor : COLOR;
  gl_Position = gWVP * vec4(POSITION, 1.0);
}

@fragment PS
in vec4 vColor;
out vec4 outColor;
void main() { outColor = vColor; }

@technique ColorTech
pass P0 vertex=VS fragment=PS blend=1
