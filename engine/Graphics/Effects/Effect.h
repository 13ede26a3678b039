// One effect file loaded into GL programs: named techniques of ordered passes, and variables shared
// by every pass (as effect variables are). Main thread with the GL context current. Handles are
// looked up once by name and stay valid until the effect is destroyed; a handle of a name the file
// lacks is inert (setting it does nothing), so a broken file never crashes a draw.
#pragma once

#include <epoxy/gl.h>

#include <cstddef>
#include <cstdint>
#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace grindle::gfx {

class EffectProgram;

struct TechniqueHandle {
  int32_t index = -1;
  bool IsValid() const { return index >= 0; }
};

struct VariableHandle {
  int32_t index = -1;
  bool IsValid() const { return index >= 0; }
};

// What a pass sets besides its programs, as indices into the render-state table.
struct PassStates {
  int32_t rasterizer = -1;  // -1: leave as the caller set it
  int32_t blend = -1;
  int32_t depthStencil = -1;
};

class Effect {
 public:
  // Loads and compiles `fileName` (relative to the working directory). Compile failures are shown
  // with the compiler's text and retried as a shader author expects; after the last failed try the
  // effect is empty.
  explicit Effect(std::string fileName);
  virtual ~Effect();
  Effect(const Effect&) = delete;
  Effect& operator=(const Effect&) = delete;

  bool IsLoaded() const { return isLoaded_; }
  const std::string& FileName() const { return sFileName_; }

  TechniqueHandle Technique(std::string_view name) const;
  VariableHandle Variable(std::string_view name) const;
  uint32_t PassCount(TechniqueHandle technique) const;
  // Makes the pass's program current, uploads every variable changed since that program last
  // saw it, binds the effect's textures and uniform blocks and applies the pass's states.
  void ApplyPass(TechniqueHandle technique, uint32_t pass);
  // The linked program of a pass (input layouts read their attribute locations from it); 0 if none.
  GLuint PassProgram(TechniqueHandle technique, uint32_t pass) const;

  void SetMatrix(VariableHandle variable, const glm::mat4& value);
  void SetMatrixArray(VariableHandle variable, const glm::mat4* values, uint32_t count);
  void SetVector(VariableHandle variable, const glm::vec4& value);
  void SetFloat(VariableHandle variable, float value);
  // Raw copy into the variable's storage from its start (light and material blocks, or a 12-byte
  // eye position into a vector); bytes beyond the variable's size are dropped.
  void SetRaw(VariableHandle variable, const void* data, size_t bytes);
  // Binds a texture (GL texture name) to a texture variable; element for sampler arrays.
  void SetTexture(VariableHandle variable, GLuint texture, uint32_t element = 0);

 private:
  struct VariableRecord;
  struct ProgramRecord;
  struct PassRecord;
  struct TechniqueRecord;

  void Load();
  void Build();
  void MarkChanged(VariableRecord& variable);

  std::string sFileName_;
  bool isLoaded_ = false;
  std::vector<std::unique_ptr<VariableRecord>> variables_;
  std::vector<std::unique_ptr<TechniqueRecord>> techniques_;
  // Passes that compile the same stages with the same defines share one program.
  std::vector<std::unique_ptr<ProgramRecord>> programs_;
  std::vector<GLuint> uniformBuffers_;
};

}  // namespace grindle::gfx
