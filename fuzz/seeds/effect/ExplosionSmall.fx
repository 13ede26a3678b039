// Particles of small explosions.
@common
const vec4 kParticleTint = vec4(1.0, 0.8, 0.3, 1.0);
@include Particles.fxh
