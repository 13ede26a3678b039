// Particles of dust clouds.
@common
const vec4 kParticleTint = vec4(0.6, 0.55, 0.45, 0.5);
@include Particles.fxh
