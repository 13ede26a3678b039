// Particles of the large explosion.
@common
const vec4 kParticleTint = vec4(1.0, 0.6, 0.2, 1.0);
@include Particles.fxh
