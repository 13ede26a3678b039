// Particles of rain.
@common
const vec4 kParticleTint = vec4(0.6, 0.7, 0.9, 0.6);
@include Particles.fxh
