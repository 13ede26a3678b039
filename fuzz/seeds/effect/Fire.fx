// Particles of fire, rising from its emitter.
@common
const vec4 kParticleTint = vec4(1.0, 0.5, 0.1, 1.0);
@include Particles.fxh
