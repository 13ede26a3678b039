#include "Graphics/RenderInterface/OpenGL/TextureCopy.h"

#include <algorithm>
#include <array>

#include "Core/Assert.h"

namespace grindle::gfx {

namespace {

// One triangle covering the viewport, from the vertex index alone.
constexpr const char* kVertexSource = R"(#version 450 core
void main() {
  vec2 corner = vec2((gl_VertexID << 1) & 2, gl_VertexID & 2);
  gl_Position = vec4(corner * 2.0 - 1.0, 0.0, 1.0);
}
)";

// Each pixel samples the source at its own centre: for a level half the size of its source that
// is the average of a 2 x 2 block. Window coordinates, so the clip origin plays no part.
constexpr const char* kFragmentSource = R"(#version 450 core
uniform sampler2D uSource;
uniform vec3 uTarget;  // width, height, 1 to turn the image upside down
out vec4 oColor;
void main() {
  vec2 uv = gl_FragCoord.xy / uTarget.xy;
  if (uTarget.z > 0.5) uv.y = 1.0 - uv.y;
  oColor = texture(uSource, uv);
}
)";

GLuint CompileStage(GLenum stage, const char* source) {
  const GLuint shader = glCreateShader(stage);
  glShaderSource(shader, 1, &source, nullptr);
  glCompileShader(shader);
  GLint ok = GL_FALSE;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
  GRINDLE_ASSERT(ok != GL_TRUE, "The built-in texture copy shader does not compile");
  return shader;
}

// Capabilities that would change what the copy writes; each is switched off for it and restored.
constexpr std::array<GLenum, 8> kCapabilities = {
    GL_BLEND,        GL_DEPTH_TEST,         GL_STENCIL_TEST,     GL_CULL_FACE,
    GL_SCISSOR_TEST, GL_RASTERIZER_DISCARD, GL_FRAMEBUFFER_SRGB, GL_COLOR_LOGIC_OP};

// The GL state a copy changes, read when it starts and put back when it ends.
class SavedState {
 public:
  SavedState() {
    glGetIntegerv(GL_CURRENT_PROGRAM, &program_);
    glGetIntegerv(GL_VERTEX_ARRAY_BINDING, &vertexArray_);
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer_);
    glGetIntegerv(GL_VIEWPORT, viewport_.data());
    glGetIntegerv(GL_POLYGON_MODE, polygonMode_.data());
    glGetBooleanv(GL_COLOR_WRITEMASK, colorMask_.data());
    for (size_t i = 0; i < kCapabilities.size(); ++i) enabled_[i] = glIsEnabled(kCapabilities[i]);
  }
  ~SavedState() {
    glUseProgram(static_cast<GLuint>(program_));
    glBindVertexArray(static_cast<GLuint>(vertexArray_));
    glBindFramebuffer(GL_DRAW_FRAMEBUFFER, static_cast<GLuint>(framebuffer_));
    glViewport(viewport_[0], viewport_[1], viewport_[2], viewport_[3]);
    glPolygonMode(GL_FRONT_AND_BACK, static_cast<GLenum>(polygonMode_[0]));
    glColorMask(colorMask_[0], colorMask_[1], colorMask_[2], colorMask_[3]);
    for (size_t i = 0; i < kCapabilities.size(); ++i) {
      if (enabled_[i] == GL_TRUE) glEnable(kCapabilities[i]);
    }
  }
  SavedState(const SavedState&) = delete;
  SavedState& operator=(const SavedState&) = delete;

 private:
  GLint program_ = 0;
  GLint vertexArray_ = 0;
  GLint framebuffer_ = 0;
  std::array<GLint, 4> viewport_{};
  std::array<GLint, 2> polygonMode_{};
  std::array<GLboolean, 4> colorMask_{};
  std::array<GLboolean, kCapabilities.size()> enabled_{};
};

}  // namespace

TextureCopy::TextureCopy() {
  const GLuint vertex = CompileStage(GL_VERTEX_SHADER, kVertexSource);
  const GLuint fragment = CompileStage(GL_FRAGMENT_SHADER, kFragmentSource);
  program_ = glCreateProgram();
  glAttachShader(program_, vertex);
  glAttachShader(program_, fragment);
  glLinkProgram(program_);
  glDeleteShader(vertex);
  glDeleteShader(fragment);
  GLint ok = GL_FALSE;
  glGetProgramiv(program_, GL_LINK_STATUS, &ok);
  GRINDLE_ASSERT(ok != GL_TRUE, "The built-in texture copy program does not link");

  GLint units = 0;
  glGetIntegerv(GL_MAX_COMBINED_TEXTURE_IMAGE_UNITS, &units);
  unit_ = static_cast<GLuint>(units - 1);
  glProgramUniform1i(program_, glGetUniformLocation(program_, "uSource"),
                     static_cast<GLint>(unit_));
  targetLocation_ = glGetUniformLocation(program_, "uTarget");

  glCreateSamplers(1, &sampler_);
  glSamplerParameteri(sampler_, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glSamplerParameteri(sampler_, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glSamplerParameteri(sampler_, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glSamplerParameteri(sampler_, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glCreateVertexArrays(1, &vertexArray_);
  glCreateFramebuffers(1, &framebuffer_);
}

TextureCopy::~TextureCopy() {
  glDeleteFramebuffers(1, &framebuffer_);
  glDeleteVertexArrays(1, &vertexArray_);
  glDeleteSamplers(1, &sampler_);
  glDeleteProgram(program_);
}

void TextureCopy::Prepare(GLuint texture) const {
  glUseProgram(program_);
  glBindVertexArray(vertexArray_);
  glBindTextureUnit(unit_, texture);
  glBindSampler(unit_, sampler_);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  for (GLenum capability : kCapabilities) glDisable(capability);
}

void TextureCopy::Draw(GLuint framebuffer, int width, int height, bool flip) const {
  glBindFramebuffer(GL_DRAW_FRAMEBUFFER, framebuffer);
  glViewport(0, 0, width, height);
  glProgramUniform3f(program_, targetLocation_, static_cast<float>(width),
                     static_cast<float>(height), flip ? 1.0f : 0.0f);
  glDrawArrays(GL_TRIANGLES, 0, 3);
}

void TextureCopy::GenerateMips(GLuint texture, int width, int height, int levels) const {
  if (levels < 2) return;
  const SavedState saved;
  Prepare(texture);
  GLint baseLevel = 0, maxLevel = 0;
  glGetTextureParameteriv(texture, GL_TEXTURE_BASE_LEVEL, &baseLevel);
  glGetTextureParameteriv(texture, GL_TEXTURE_MAX_LEVEL, &maxLevel);
  for (int level = 1; level < levels; ++level) {
    // The source level alone is visible to the sampler, so the level drawn is never read.
    glTextureParameteri(texture, GL_TEXTURE_BASE_LEVEL, level - 1);
    glTextureParameteri(texture, GL_TEXTURE_MAX_LEVEL, level - 1);
    glNamedFramebufferTexture(framebuffer_, GL_COLOR_ATTACHMENT0, texture, level);
    Draw(framebuffer_, std::max(1, width >> level), std::max(1, height >> level), false);
  }
  glNamedFramebufferTexture(framebuffer_, GL_COLOR_ATTACHMENT0, 0, 0);
  glTextureParameteri(texture, GL_TEXTURE_BASE_LEVEL, baseLevel);
  glTextureParameteri(texture, GL_TEXTURE_MAX_LEVEL, maxLevel);
  glBindTextureUnit(unit_, 0);
  glBindSampler(unit_, 0);
}

void TextureCopy::CopyFlipped(GLuint texture, GLuint framebuffer, int width, int height) const {
  const SavedState saved;
  Prepare(texture);
  Draw(framebuffer, width, height, true);
  glBindTextureUnit(unit_, 0);
  glBindSampler(unit_, 0);
}

}  // namespace grindle::gfx
