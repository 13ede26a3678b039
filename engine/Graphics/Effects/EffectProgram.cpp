#include "Graphics/Effects/EffectProgram.h"

#include <vector>

namespace grindle::gfx {
namespace {

GLenum GlStage(StageKind kind) {
  switch (kind) {
    case StageKind::kVertex:
      return GL_VERTEX_SHADER;
    case StageKind::kGeometry:
      return GL_GEOMETRY_SHADER;
    case StageKind::kFragment:
      return GL_FRAGMENT_SHADER;
  }
  return GL_VERTEX_SHADER;
}

std::string ShaderLog(GLuint shader) {
  GLint length = 0;
  glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
  std::string text(static_cast<size_t>(length > 0 ? length : 0), '\0');
  if (length > 0) glGetShaderInfoLog(shader, length, nullptr, text.data());
  while (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

std::string ProgramLog(GLuint program) {
  GLint length = 0;
  glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
  std::string text(static_cast<size_t>(length > 0 ? length : 0), '\0');
  if (length > 0) glGetProgramInfoLog(program, length, nullptr, text.data());
  while (!text.empty() && text.back() == '\0') text.pop_back();
  return text;
}

GLuint CompileStage(const std::string& fileName, const EffectSource& source, const PassSource& pass,
                    const StageSource& stage, std::string& log) {
  const std::string glsl = AssembleStage(source, pass, stage);
  const char* text = glsl.c_str();
  const GLuint shader = glCreateShader(GlStage(stage.kind));
  glShaderSource(shader, 1, &text, nullptr);
  glCompileShader(shader);
  GLint ok = GL_FALSE;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &ok);
  if (ok == GL_TRUE) return shader;
  log += fileName + ": pass '" + pass.name + "', stage '" + stage.name + "':\n" +
         NameFilesInLog(source.files, ShaderLog(shader));
  glDeleteShader(shader);
  return 0;
}

}  // namespace

GLuint BuildPassProgram(const std::string& fileName, const EffectSource& source,
                        const PassSource& pass, std::string& log) {
  std::vector<const StageSource*> stages = {source.FindStage(StageKind::kVertex, pass.vertex),
                                            source.FindStage(StageKind::kFragment, pass.fragment)};
  if (!pass.geometry.empty())
    stages.push_back(source.FindStage(StageKind::kGeometry, pass.geometry));

  std::vector<GLuint> shaders;
  bool failed = false;
  for (const StageSource* stage : stages) {
    const GLuint shader = CompileStage(fileName, source, pass, *stage, log);
    if (shader == 0)
      failed = true;
    else
      shaders.push_back(shader);
  }
  GLuint program = 0;
  if (!failed) {
    program = glCreateProgram();
    for (GLuint shader : shaders) glAttachShader(program, shader);
    glLinkProgram(program);
    GLint ok = GL_FALSE;
    glGetProgramiv(program, GL_LINK_STATUS, &ok);
    if (ok != GL_TRUE) {
      log += fileName + ": pass '" + pass.name + "' does not link:\n" + ProgramLog(program);
      glDeleteProgram(program);
      program = 0;
    }
  }
  for (GLuint shader : shaders) glDeleteShader(shader);
  return program;
}

}  // namespace grindle::gfx
