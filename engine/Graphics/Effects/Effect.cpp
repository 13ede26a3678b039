#include "Graphics/Effects/Effect.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

#include "Graphics/Effects/EffectFile.h"
#include "Graphics/Effects/EffectProgram.h"
#include "Graphics/Effects/EffectRecords.h"
#include "Platform/Dialogs.h"

namespace grindle::gfx {

namespace {

// A shader author fixes the file while the box is up and presses OK; after this many tries the
// effect stays empty.
constexpr int kMaxLoadAttempts = 100;

VarType TypeOf(GLenum glType) {
  switch (glType) {
    case GL_FLOAT:
      return VarType::kFloat;
    case GL_INT:
    case GL_UNSIGNED_INT:
    case GL_BOOL:
      return VarType::kInt;
    case GL_FLOAT_VEC2:
      return VarType::kVec2;
    case GL_FLOAT_VEC3:
      return VarType::kVec3;
    case GL_FLOAT_VEC4:
      return VarType::kVec4;
    case GL_FLOAT_MAT4:
      return VarType::kMat4;
    case GL_SAMPLER_2D:
    case GL_SAMPLER_2D_ARRAY:
    case GL_SAMPLER_CUBE:
    case GL_SAMPLER_1D:
    case GL_SAMPLER_3D:
    case GL_SAMPLER_2D_SHADOW:
      return VarType::kSampler;
    default:
      return VarType::kUnsupported;
  }
}

size_t ElementBytes(VarType type) {
  switch (type) {
    case VarType::kFloat:
    case VarType::kInt:
      return 4;
    case VarType::kVec2:
      return 8;
    case VarType::kVec3:
      return 12;
    case VarType::kVec4:
      return 16;
    case VarType::kMat4:
      return 64;
    default:
      return 0;
  }
}

std::string StripArraySuffix(std::string name) {
  const size_t bracket = name.find('[');
  if (bracket != std::string::npos) name.resize(bracket);
  return name;
}

bool ReadFile(const std::string& fileName, std::string& text) {
  std::ifstream file(fileName, std::ios::binary);
  if (!file) return false;
  std::ostringstream contents;
  contents << file.rdbuf();
  text = contents.str();
  return true;
}

// Passes that compile the same stages with the same defines share one program.
std::string ProgramKey(const PassSource& pass) {
  std::string key = pass.vertex + "|" + pass.geometry + "|" + pass.fragment;
  for (const std::string& define : pass.defines) key += "|" + define;
  return key;
}

}  // namespace

Effect::Effect(std::string fileName) : sFileName_(std::move(fileName)) { Load(); }

Effect::~Effect() {
  for (auto& record : programs_) glDeleteProgram(record->program);
  if (!uniformBuffers_.empty()) {
    glDeleteBuffers(static_cast<GLsizei>(uniformBuffers_.size()), uniformBuffers_.data());
  }
}

void Effect::Load() {
  bool warnedMissing = false;
  for (int attempt = 0; attempt < kMaxLoadAttempts; ++attempt) {
    std::string text;
    if (!ReadFile(sFileName_, text)) {
      // No compiler text to show: the attempts repeat quietly, as an unreadable file gives none.
      if (!warnedMissing) std::printf("Effect file %s could not be opened\n", sFileName_.c_str());
      warnedMissing = true;
      continue;
    }
    EffectSource source;
    std::string error;
    const std::string folder = sFileName_.substr(0, sFileName_.rfind('/') + 1);
    const IncludeReader readInclude = [&folder](std::string_view name, std::string& included) {
      return ReadFile(folder + std::string(name), included);
    };
    if (ParseEffectSource(sFileName_, text, source, error, readInclude)) {
      std::map<std::string, ProgramRecord*> byKey;
      std::vector<std::unique_ptr<ProgramRecord>> programs;
      std::vector<std::unique_ptr<TechniqueRecord>> techniques;
      for (const TechniqueSource& technique : source.techniques) {
        auto record = std::make_unique<TechniqueRecord>();
        record->name = technique.name;
        for (const PassSource& pass : technique.passes) {
          // One broken stage is shared by many passes: its compiler text is shown once.
          if (!error.empty()) break;
          ProgramRecord*& program = byKey[ProgramKey(pass)];
          if (program == nullptr) {
            programs.push_back(std::make_unique<ProgramRecord>());
            program = programs.back().get();
            program->program = BuildPassProgram(sFileName_, source, pass, error);
          }
          record->passes.push_back({program, {pass.rasterizer, pass.blend, pass.depthStencil}});
        }
        techniques.push_back(std::move(record));
      }
      if (error.empty()) {
        techniques_ = std::move(techniques);
        programs_ = std::move(programs);
        Build();
        isLoaded_ = true;
        return;
      }
      for (auto& record : programs) glDeleteProgram(record->program);
    }
    platform::ShowMessageBox("", error.c_str());
    // Nobody can fix the file and press OK on a machine without a display.
    if (!platform::HasDisplay()) return;
  }
}

void Effect::Build() {
  std::map<std::string, uint32_t> byName;
  auto variableFor = [&](const std::string& name, VarType type, uint32_t arraySize,
                         size_t bytes) -> uint32_t {
    auto [it, inserted] = byName.try_emplace(name, static_cast<uint32_t>(variables_.size()));
    if (inserted) {
      auto record = std::make_unique<VariableRecord>();
      record->name = name;
      record->type = type;
      variables_.push_back(std::move(record));
    }
    VariableRecord& record = *variables_[it->second];
    if (arraySize > record.arraySize) record.arraySize = arraySize;
    if (bytes > record.bytes.size()) record.bytes.resize(bytes, 0);
    if (type == VarType::kSampler && record.textures.size() < arraySize) {
      record.textures.resize(arraySize, 0);
    }
    return it->second;
  };

  struct Found {
    ProgramRecord* program;
    uint32_t variable;
    GLint location;  // uniform location, or block index for blocks
  };
  std::vector<Found> found;
  for (auto& record : programs_) {
    const GLuint program = record->program;
    GLint count = 0;
    glGetProgramInterfaceiv(program, GL_UNIFORM, GL_ACTIVE_RESOURCES, &count);
    for (GLint i = 0; i < count; ++i) {
      const GLenum props[] = {GL_TYPE, GL_ARRAY_SIZE, GL_BLOCK_INDEX, GL_LOCATION};
      GLint values[4] = {};
      glGetProgramResourceiv(program, GL_UNIFORM, i, 4, props, 4, nullptr, values);
      if (values[2] != -1) continue;  // a member of a block: the block is the variable
      char name[256] = {};
      glGetProgramResourceName(program, GL_UNIFORM, i, sizeof(name), nullptr, name);
      const VarType type = TypeOf(static_cast<GLenum>(values[0]));
      if (type == VarType::kUnsupported) continue;
      const uint32_t arraySize = static_cast<uint32_t>(values[1]);
      const uint32_t index =
          variableFor(StripArraySuffix(name), type, arraySize, ElementBytes(type) * arraySize);
      found.push_back({record.get(), index, values[3]});
    }
    glGetProgramInterfaceiv(program, GL_UNIFORM_BLOCK, GL_ACTIVE_RESOURCES, &count);
    for (GLint i = 0; i < count; ++i) {
      const GLenum prop = GL_BUFFER_DATA_SIZE;
      GLint size = 0;
      glGetProgramResourceiv(program, GL_UNIFORM_BLOCK, i, 1, &prop, 1, nullptr, &size);
      char name[256] = {};
      glGetProgramResourceName(program, GL_UNIFORM_BLOCK, i, sizeof(name), nullptr, name);
      const uint32_t index = variableFor(name, VarType::kBlock, 1, static_cast<size_t>(size));
      found.push_back({record.get(), index, i});
    }
  }

  uint32_t nextUnit = 0;
  for (auto& variable : variables_) {
    if (variable->type == VarType::kSampler) {
      variable->firstSlot = nextUnit;
      nextUnit += variable->arraySize;
    } else if (variable->type == VarType::kBlock) {
      variable->firstSlot = static_cast<uint32_t>(uniformBuffers_.size());
      GLuint buffer = 0;
      glCreateBuffers(1, &buffer);
      glNamedBufferStorage(buffer, static_cast<GLsizeiptr>(variable->bytes.size()),
                           variable->bytes.data(), GL_DYNAMIC_STORAGE_BIT);
      uniformBuffers_.push_back(buffer);
    }
  }
  for (const Found& entry : found) {
    const VariableRecord& variable = *variables_[entry.variable];
    const GLuint program = entry.program->program;
    if (variable.type == VarType::kSampler) {
      std::vector<GLint> units(variable.arraySize);
      for (uint32_t i = 0; i < variable.arraySize; ++i)
        units[i] = static_cast<GLint>(variable.firstSlot + i);
      glProgramUniform1iv(program, entry.location, static_cast<GLsizei>(units.size()),
                          units.data());
      entry.program->samplers.push_back(entry.variable);
    } else if (variable.type == VarType::kBlock) {
      glUniformBlockBinding(program, static_cast<GLuint>(entry.location), variable.firstSlot);
      entry.program->blocks.push_back(entry.variable);
    } else {
      entry.program->uniforms.push_back({entry.variable, entry.location, 0});
    }
  }
}

TechniqueHandle Effect::Technique(std::string_view name) const {
  for (size_t i = 0; i < techniques_.size(); ++i) {
    if (techniques_[i]->name == name) return {static_cast<int32_t>(i)};
  }
  return {};
}

VariableHandle Effect::Variable(std::string_view name) const {
  for (size_t i = 0; i < variables_.size(); ++i) {
    if (variables_[i]->name == name) return {static_cast<int32_t>(i)};
  }
  return {};
}

uint32_t Effect::PassCount(TechniqueHandle technique) const {
  if (!technique.IsValid() || static_cast<size_t>(technique.index) >= techniques_.size()) return 0;
  return static_cast<uint32_t>(techniques_[static_cast<size_t>(technique.index)]->passes.size());
}

GLuint Effect::PassProgram(TechniqueHandle technique, uint32_t pass) const {
  if (pass >= PassCount(technique)) return 0;
  return techniques_[static_cast<size_t>(technique.index)]->passes[pass].program->program;
}

}  // namespace grindle::gfx
