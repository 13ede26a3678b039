#include "Graphics/RenderInterface/OpenGL/Particles/ParticleSystem.h"

#include "Graphics/Effects/EffectWrappers.h"
#include "Graphics/RenderInterface/OpenGL/InputAssembler.h"
#include "Graphics/RenderInterface/OpenGL/Particles/ParticleTextures.h"

namespace grindle::gfx {

namespace {

// The particle vertex as the particle input layout reads it (56 bytes).
struct ParticleVertex {
  float position[3];
  float currentPosition[3];
  float velocity[3];
  float size[2];
  float age;
  float rotation;
  uint32_t type;
};
static_assert(sizeof(ParticleVertex) == 56);

void SetFrameVariables(ParticleEffect& effect, const ParticleFrame& frame, float gameTime) {
  effect.SetMatrix(effect.Var(ParticleVar::gViewProj), frame.viewProj);
  effect.SetFloat(effect.Var(ParticleVar::gGameTime), gameTime);
  effect.SetFloat(effect.Var(ParticleVar::gTimeStep), frame.timeStep);
  effect.SetRaw(effect.Var(ParticleVar::gEyePosW), &frame.eye[0], 12);
}

void BindSource(InputAssembler& assembler, GLuint buffer) {
  assembler.SetInputLayout(LayoutKind::kParticle);
  glVertexArrayVertexBuffer(assembler.Layouts().CurrentObject(), 0, buffer, 0,
                            sizeof(ParticleVertex));
}

}  // namespace

ParticleSystem::ParticleSystem(ParticleKind kind) : kind_(kind) {
  const GLsizeiptr bytes = static_cast<GLsizeiptr>(KindInfo(kind).capacity) *
                           static_cast<GLsizeiptr>(sizeof(ParticleVertex));
  glCreateBuffers(2, buffers_.data());
  glCreateTransformFeedbacks(2, feedback_.data());
  for (size_t i = 0; i < 2; ++i) {
    glNamedBufferStorage(buffers_[i], bytes, nullptr, 0);
    glTransformFeedbackBufferBase(feedback_[i], 0, buffers_[i]);
  }
  const ParticleVertex emitter{};  // type 0 at the origin; the pass moves it to the emit point
  glCreateBuffers(1, &seedBuffer_);
  glNamedBufferStorage(seedBuffer_, sizeof(emitter), &emitter, 0);
  glCreateQueries(GL_TRANSFORM_FEEDBACK_PRIMITIVES_WRITTEN, 1, &writtenQuery_);
}

ParticleSystem::~ParticleSystem() {
  glDeleteQueries(1, &writtenQuery_);
  glDeleteBuffers(1, &seedBuffer_);
  glDeleteTransformFeedbacks(2, feedback_.data());
  glDeleteBuffers(2, buffers_.data());
}

void ParticleSystem::Restart() {
  isFresh_ = true;
  age_ = 0.0f;
}

bool ParticleSystem::IsFinished() const {
  const float duration = KindInfo(kind_).oneShotDuration;
  return duration > 0.0f && age_ >= duration;
}

void ParticleSystem::Advance(ParticleEffect& effect, InputAssembler& assembler,
                             const ParticleFrame& frame, const ParticleTextures& textures) {
  if (IsFinished()) return;
  age_ += frame.timeStep;
  SetFrameVariables(effect, frame, age_);
  effect.SetRaw(effect.Var(ParticleVar::gEmitPosW), &emitPosition_[0], 12);
  effect.SetRaw(effect.Var(ParticleVar::gEmitDirW), &emitDirection_[0], 12);
  effect.SetTexture(effect.Var(ParticleVar::gTexArray), textures.TextureArray());
  effect.SetTexture(effect.Var(ParticleVar::gRandomTex), textures.RandomTexture());
  effect.ApplyPass(effect.Tech(ParticleTech::StreamOutTech), 0);

  const uint32_t target = 1u - current_;
  BindSource(assembler, isFresh_ ? seedBuffer_ : buffers_[current_]);
  glEnable(GL_RASTERIZER_DISCARD);
  glBindTransformFeedback(GL_TRANSFORM_FEEDBACK, feedback_[target]);
  glBeginQuery(GL_TRANSFORM_FEEDBACK_PRIMITIVES_WRITTEN, writtenQuery_);
  glBeginTransformFeedback(GL_POINTS);
  if (isFresh_) {
    glDrawArrays(GL_POINTS, 0, 1);
  } else {
    glDrawTransformFeedback(GL_POINTS, feedback_[current_]);
  }
  glEndTransformFeedback();
  glEndQuery(GL_TRANSFORM_FEEDBACK_PRIMITIVES_WRITTEN);
  glBindTransformFeedback(GL_TRANSFORM_FEEDBACK, 0);
  glDisable(GL_RASTERIZER_DISCARD);
  current_ = target;
  isFresh_ = false;
  hasQueried_ = true;
}

void ParticleSystem::Draw(ParticleEffect& effect, InputAssembler& assembler,
                          const ParticleFrame& frame) {
  if (isFresh_ || IsFinished()) return;
  SetFrameVariables(effect, frame, age_);
  effect.ApplyPass(effect.Tech(ParticleTech::DrawTech), 0);
  BindSource(assembler, buffers_[current_]);
  glDrawTransformFeedback(GL_POINTS, feedback_[current_]);
}

uint32_t ParticleSystem::LastParticleCount() const {
  if (!hasQueried_ || IsFinished()) return 0;
  GLuint written = 0;
  glGetQueryObjectuiv(writtenQuery_, GL_QUERY_RESULT, &written);
  return written;
}

}  // namespace grindle::gfx
