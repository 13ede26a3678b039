// Particles of the blink effect.
@common
const vec4 kParticleTint = vec4(0.5, 0.8, 1.0, 1.0);
@include Particles.fxh
