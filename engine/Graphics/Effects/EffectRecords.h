// The records behind an Effect's handles, shared by its loading (Effect.cpp) and its per-draw use
// (EffectApply.cpp). Main thread, GL context current; nothing outside Effect may include this.
#pragma once

#include <epoxy/gl.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Graphics/Effects/Effect.h"

namespace grindle::gfx {

enum class VarType { kFloat, kInt, kVec2, kVec3, kVec4, kMat4, kSampler, kBlock, kUnsupported };

struct Effect::VariableRecord {
  std::string name;
  VarType type = VarType::kUnsupported;
  uint32_t arraySize = 1;
  std::vector<unsigned char> bytes;  // numbers and block contents
  std::vector<GLuint> textures;      // samplers, one per element
  uint32_t firstSlot = 0;            // texture unit or uniform-block binding
  uint32_t version = 1;
  bool isBufferDirty = false;
};

struct Effect::ProgramRecord {
  struct Uniform {
    uint32_t variable;
    GLint location;
    uint32_t uploadedVersion;
  };
  GLuint program = 0;
  std::vector<Uniform> uniforms;
  std::vector<uint32_t> samplers;
  std::vector<uint32_t> blocks;
};

struct Effect::PassRecord {
  ProgramRecord* program = nullptr;
  PassStates states;
};

struct Effect::TechniqueRecord {
  std::string name;
  std::vector<PassRecord> passes;
};

}  // namespace grindle::gfx
