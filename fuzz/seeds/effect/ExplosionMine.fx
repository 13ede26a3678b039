// Particles of mine explosions.
@common
const vec4 kParticleTint = vec4(1.0, 0.3, 0.1, 1.0);
@include Particles.fxh
