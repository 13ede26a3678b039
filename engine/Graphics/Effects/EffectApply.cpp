// What an Effect does per draw: applying a pass (program, changed variables, textures, blocks,
// states) and the variable setters, which only mark values changed.
#include <cstring>

#include "Graphics/Effects/EffectRecords.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

namespace grindle::gfx {

void Effect::ApplyPass(TechniqueHandle technique, uint32_t pass) {
  if (pass >= PassCount(technique)) return;
  const PassRecord& record = techniques_[static_cast<size_t>(technique.index)]->passes[pass];
  ProgramRecord& program = *record.program;
  glUseProgram(program.program);
  for (ProgramRecord::Uniform& uniform : program.uniforms) {
    const VariableRecord& variable = *variables_[uniform.variable];
    if (uniform.uploadedVersion == variable.version) continue;
    uniform.uploadedVersion = variable.version;
    const auto count = static_cast<GLsizei>(variable.arraySize);
    const auto* floats = reinterpret_cast<const GLfloat*>(variable.bytes.data());
    switch (variable.type) {
      case VarType::kFloat:
        glProgramUniform1fv(program.program, uniform.location, count, floats);
        break;
      case VarType::kInt:
        glProgramUniform1iv(program.program, uniform.location, count,
                            reinterpret_cast<const GLint*>(variable.bytes.data()));
        break;
      case VarType::kVec2:
        glProgramUniform2fv(program.program, uniform.location, count, floats);
        break;
      case VarType::kVec3:
        glProgramUniform3fv(program.program, uniform.location, count, floats);
        break;
      case VarType::kVec4:
        glProgramUniform4fv(program.program, uniform.location, count, floats);
        break;
      case VarType::kMat4:
        glProgramUniformMatrix4fv(program.program, uniform.location, count, GL_FALSE, floats);
        break;
      default:
        break;
    }
  }
  for (uint32_t index : program.samplers) {
    const VariableRecord& variable = *variables_[index];
    for (uint32_t i = 0; i < variable.textures.size(); ++i) {
      glBindTextureUnit(variable.firstSlot + i, variable.textures[i]);
    }
  }
  for (uint32_t index : program.blocks) {
    VariableRecord& variable = *variables_[index];
    const GLuint buffer = uniformBuffers_[variable.firstSlot];
    if (variable.isBufferDirty) {
      glNamedBufferSubData(buffer, 0, static_cast<GLsizeiptr>(variable.bytes.size()),
                           variable.bytes.data());
      variable.isBufferDirty = false;
    }
    glBindBufferBase(GL_UNIFORM_BUFFER, variable.firstSlot, buffer);
  }
  if (record.states.rasterizer >= 0) SetRasterizerState(record.states.rasterizer);
  if (record.states.blend >= 0) SetBlendState(record.states.blend);
  if (record.states.depthStencil >= 0) SetDepthStencilState(record.states.depthStencil);
}

void Effect::MarkChanged(VariableRecord& variable) {
  ++variable.version;
  variable.isBufferDirty = true;
}

void Effect::SetRaw(VariableHandle handle, const void* data, size_t bytes) {
  if (!handle.IsValid()) return;
  VariableRecord& variable = *variables_[static_cast<size_t>(handle.index)];
  const size_t copied = bytes < variable.bytes.size() ? bytes : variable.bytes.size();
  if (copied == 0 || std::memcmp(variable.bytes.data(), data, copied) == 0) return;
  std::memcpy(variable.bytes.data(), data, copied);
  MarkChanged(variable);
}

void Effect::SetMatrix(VariableHandle variable, const glm::mat4& value) {
  SetRaw(variable, &value[0][0], sizeof(glm::mat4));
}

void Effect::SetMatrixArray(VariableHandle variable, const glm::mat4* values, uint32_t count) {
  SetRaw(variable, values, sizeof(glm::mat4) * count);
}

void Effect::SetVector(VariableHandle variable, const glm::vec4& value) {
  SetRaw(variable, &value[0], sizeof(glm::vec4));
}

void Effect::SetFloat(VariableHandle variable, float value) {
  SetRaw(variable, &value, sizeof(value));
}

void Effect::SetTexture(VariableHandle handle, GLuint texture, uint32_t element) {
  if (!handle.IsValid()) return;
  VariableRecord& variable = *variables_[static_cast<size_t>(handle.index)];
  if (element < variable.textures.size()) variable.textures[element] = texture;
}

}  // namespace grindle::gfx
