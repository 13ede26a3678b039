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
  Effect* (*source)();
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
       [] { return static_cast<Effect*>(Effects().drawQuad.get()); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0}, {"TEXCOORD", 0, 2, GL_FLOAT, 12, 0}},
       20,
       true,
       [] { return static_cast<Effect*>(Effects().sprite.get()); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0}},
       12,
       true,
       [] { return static_cast<Effect*>(Effects().sky.get()); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0},
        {"CURPOSITION", 0, 3, GL_FLOAT, 12, 0},
        {"VELOCITY", 0, 3, GL_FLOAT, 24, 0},
        {"SIZE", 0, 2, GL_FLOAT, 36, 0},
        {"AGE", 0, 1, GL_FLOAT, 44, 0},
        {"ROTANGLE", 0, 1, GL_FLOAT, 48, 0},
        {"TYPE", 0, 1, GL_UNSIGNED_INT, 52, 0}},
       56,
       true,
       [] { return static_cast<Effect*>(Effects().explosion.get()); }},
      {MeshElements(), 44, false, [] { return static_cast<Effect*>(Effects().basic.get()); }},
      {{{"POSITION", 0, 3, GL_FLOAT, 0, 0}, {"COLOR", 0, 4, GL_FLOAT, 12, 0}},
       28,
       false,
       [] { return static_cast<Effect*>(Effects().color.get()); }},
      {SkinnedElements(), 84, false,
       [] { return static_cast<Effect*>(Effects().normalMap.get()); }},
      {InstancedElements(), 44, false,
       [] { return static_cast<Effect*>(Effects().instanced.get()); }},
  }};
  return recipes;
}

std::array<GLuint, static_cast<size_t>(LayoutKind::kCount)> gLayouts{};
GLuint gEmptyLayout = 0;
LayoutKind gCurrent = LayoutKind::kPosNormalTex;
GLuint gCurrentObject = 0;

GLuint BuildLayout(const LayoutRecipe& recipe) {
  GLuint vao = 0;
  glCreateVertexArrays(1, &vao);
  const Effect* effect = recipe.source();
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

void CreateSet(bool isStartup) {
  for (size_t i = 0; i < gLayouts.size(); ++i) {
    if (Recipes()[i].isStartup != isStartup) continue;
    if (gLayouts[i] != 0) glDeleteVertexArrays(1, &gLayouts[i]);
    gLayouts[i] = BuildLayout(Recipes()[i]);
  }
  SetInputLayout(gCurrent);
}

}  // namespace

void CreateStartupLayouts() { CreateSet(true); }
void CreateSceneLayouts() { CreateSet(false); }

void DestroyLayouts() {
  for (GLuint& vao : gLayouts) {
    if (vao != 0) glDeleteVertexArrays(1, &vao);
    vao = 0;
  }
  if (gEmptyLayout != 0) glDeleteVertexArrays(1, &gEmptyLayout);
  gEmptyLayout = 0;
  gCurrentObject = 0;
}

void SetInputLayout(LayoutKind kind) {
  gCurrent = kind;
  GLuint vao = gLayouts[static_cast<size_t>(kind)];
  if (vao == 0) {
    if (gEmptyLayout == 0) glCreateVertexArrays(1, &gEmptyLayout);
    vao = gEmptyLayout;
  }
  gCurrentObject = vao;
  glBindVertexArray(vao);
}

GLuint CurrentLayoutObject() { return gCurrentObject; }

LayoutKind CurrentInputLayout() { return gCurrent; }

}  // namespace grindle::gfx
