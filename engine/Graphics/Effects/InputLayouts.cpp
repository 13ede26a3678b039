#include "Graphics/Effects/InputLayouts.h"

#include <array>
#include <string>
#include <vector>

#include "Graphics/Effects/EffectSlots.h"

namespace grindle::gfx {

namespace {

struct Element {
  const char* semantic;
  uint32_t semanticIndex;  // added to the location of `semantic` (matrix rows)
  GLint components;
  GLenum type;
  uint32_t offset;
  uint32_t slot;
};

struct LayoutRecipe {
  std::vector<Element> elements;
  uint32_t stride;
  bool isStartup;
  const Effect* (*source)(const EffectSlots&);
};

std::vector<Element> MeshElements() {
  return {{"POSITION", 0, 3, GL_FLOAT, 0, 0},
          {"NORMAL", 0, 3, GL_FLOAT, 12, 0},
          {"TEXCOORD", 0, 2, GL_FLOAT, 24, 0},
          {"TANGENT", 0, 3, GL_FLOAT, 32, 0}};
}

std::vector<Element> SkinnedElements() {
  std::vector<Element> elements = MeshElements();
  static constexpr const char* kWeights[] = {"WEIGHTSA", "WEIGHTSB", "WEIGHTSC", "WEIGHTSD",
                                             "WEIGHTSE"};
  static constexpr const char* kBones[] = {"BONEINDICESA", "BONEINDICESB", "BONEINDICESC",
                                           "BONEINDICESD", "BONEINDICESE"};
  for (uint32_t i = 0; i < 5; ++i) elements.push_back({kWeights[i], 0, 1, GL_FLOAT, 44 + 4 * i, 0});
  for (uint32_t i = 0; i < 5; ++i)
    elements.push_back({kBones[i], 0, 1, GL_UNSIGNED_INT, 64 + 4 * i, 0});
  return elements;
}

std::vector<Element> InstancedElements() {
  std::vector<Element> elements = MeshElements();
  for (uint32_t i = 0; i < 4; ++i) elements.push_back({"WORLD", i, 4, GL_FLOAT, 16 * i, 1});
  return elements;
}

const std::array<LayoutRecipe, static_cast<size_t>(LayoutKind::kCount)>& Recipes() {
  static const std::array<LayoutRecipe, static_cast<size_t>(LayoutKind::kCount)> recipes = {{
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0},
        {"NORMAL", 0, 3, GL_FLOAT, 12, 0},
        {"TEXCOORD", 0, 2, GL_FLOAT, 24, 0}},
       32,
       true,
       [](const EffectSlots& e) -> const Effect* { return e.drawQuad.get(); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0}, {"TEXCOORD", 0, 2, GL_FLOAT, 12, 0}},
       20,
       true,
       [](const EffectSlots& e) -> const Effect* { return e.sprite.get(); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0}},
       12,
       true,
       [](const EffectSlots& e) -> const Effect* { return e.sky.get(); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0},
        {"CURPOSITION", 0, 3, GL_FLOAT, 12, 0},
        {"VELOCITY", 0, 3, GL_FLOAT, 24, 0},
        {"SIZE", 0, 2, GL_FLOAT, 36, 0},
        {"AGE", 0, 1, GL_FLOAT, 44, 0},
        {"ROTANGLE", 0, 1, GL_FLOAT, 48, 0},
        {"TYPE", 0, 1, GL_UNSIGNED_INT, 52, 0}},
       56,
       true,
       [](const EffectSlots& e) -> const Effect* { return e.explosion.get(); }},
      {MeshElements(), 44, false,
       [](const EffectSlots& e) -> const Effect* { return e.basic.get(); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0}, {"COLOR", 0, 4, GL_FLOAT, 12, 0}},
       28,
       false,
       [](const EffectSlots& e) -> const Effect* { return e.color.get(); }},
      {SkinnedElements(), 84, false,
       [](const EffectSlots& e) -> const Effect* { return e.normalMap.get(); }},
      {InstancedElements(), 44, false,
       [](const EffectSlots& e) -> const Effect* { return e.instanced.get(); }},
  }};
  return recipes;
}

GLuint BuildLayout(const LayoutRecipe& recipe, const EffectSlots& effects) {
  GLuint vao = 0;
  glCreateVertexArrays(1, &vao);
  const Effect* effect = recipe.source(effects);
  const GLuint program = effect != nullptr ? effect->PassProgram(TechniqueHandle{0}, 0) : 0;
  if (program == 0) return vao;
  for (const Element& element : recipe.elements) {
    const GLint base = glGetProgramResourceLocation(program, GL_PROGRAM_INPUT, element.semantic);
    if (base < 0) continue;  // the signature does not read it
    const GLuint location = static_cast<GLuint>(base) + element.semanticIndex;
    glEnableVertexArrayAttrib(vao, location);
    if (element.type == GL_UNSIGNED_INT) {
      glVertexArrayAttribIFormat(vao, location, element.components, element.type, element.offset);
    } else {
      glVertexArrayAttribFormat(vao, location, element.components, element.type, GL_FALSE,
                                element.offset);
    }
    glVertexArrayAttribBinding(vao, location, element.slot);
  }
  glVertexArrayBindingDivisor(vao, 1, 1);  // slot 1 is per instance wherever it is used
  return vao;
}

}  // namespace

void InputLayouts::CreateStartup(const EffectSlots& effects) { CreateSet(true, effects); }
void InputLayouts::CreateScene(const EffectSlots& effects) { CreateSet(false, effects); }

void InputLayouts::CreateSet(bool isStartup, const EffectSlots& effects) {
  for (size_t i = 0; i < layouts_.size(); ++i) {
    if (Recipes()[i].isStartup != isStartup) continue;
    if (layouts_[i] != 0) glDeleteVertexArrays(1, &layouts_[i]);
    layouts_[i] = BuildLayout(Recipes()[i], effects);
  }
  Set(current_);
}

void InputLayouts::Destroy() {
  for (GLuint& vao : layouts_) {
    if (vao != 0) glDeleteVertexArrays(1, &vao);
    vao = 0;
  }
  if (empty_ != 0) glDeleteVertexArrays(1, &empty_);
  empty_ = 0;
  currentObject_ = 0;
}

void InputLayouts::Set(LayoutKind kind) {
  current_ = kind;
  GLuint vao = layouts_[static_cast<size_t>(kind)];
  if (vao == 0) {
    if (empty_ == 0) glCreateVertexArrays(1, &empty_);
    vao = empty_;
  }
  currentObject_ = vao;
  glBindVertexArray(vao);
}

}  // namespace grindle::gfx
