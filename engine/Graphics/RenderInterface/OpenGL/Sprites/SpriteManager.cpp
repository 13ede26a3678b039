#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteManager.h"

#include <cstdio>
#include <glm/ext/matrix_transform.hpp>
#include <glm/mat3x3.hpp>

#include "Core/Database.h"
#include "Core/DatabaseNumbers.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"

namespace grindle::gfx {

namespace {

// The unit square in the glyph quads' layout: y down, v = 0 at the top.
constexpr GlyphQuad kUnitQuad = {{{0.0f, 0.0f, 0.0f, 0.0f, 0.0f},
                                  {0.0f, 1.0f, 0.0f, 0.0f, 1.0f},
                                  {1.0f, 1.0f, 0.0f, 1.0f, 1.0f},
                                  {1.0f, 0.0f, 0.0f, 1.0f, 0.0f}}};
constexpr uint16_t kQuadIndices[6] = {0, 1, 2, 0, 2, 3};
// A missing font still shows where its text would be: a box this many pixels per character.
constexpr float kMissingFontLine = 32.0f;

float AlignFactor(HorizontalAlign align) {
  return align == HorizontalAlign::kLeft ? 0.0f : align == HorizontalAlign::kCenter ? 0.5f : 1.0f;
}
float AlignFactor(VerticalAlign align) {
  return align == VerticalAlign::kTop ? 0.0f : align == VerticalAlign::kCenter ? 0.5f : 1.0f;
}

glm::vec2 AnchorShift(const SpriteSettings& sprite, glm::vec2 size) {
  return size * glm::vec2(AlignFactor(sprite.horizontal), AlignFactor(sprite.vertical));
}

// The object's `Transform` without its scale: sprites keep their own size on scaled objects.
glm::mat4 ObjectFrame(const Database& object) {
  const DataHandle<Database> transform = object.Find<Database>(KeyOf(WellKnown::Transform));
  if (!transform) return glm::mat4(1.0f);
  const glm::vec3 position(ReadNumber(*transform, KeyOf(WellKnown::PositionX), 0.0),
                           ReadNumber(*transform, KeyOf(WellKnown::PositionY), 0.0),
                           ReadNumber(*transform, KeyOf(WellKnown::PositionZ), 0.0));
  const DataHandle<glm::mat4> rotation = transform->Find<glm::mat4>(KeyOf(WellKnown::Rotation));
  return glm::translate(glm::mat4(1.0f), position) * (rotation ? *rotation : glm::mat4(1.0f));
}

}  // namespace

SpriteManager::SpriteManager(RenderDevice& device, const Database& root, const glm::mat4& view,
                             ResourceManager* resources)
    : device_(device),
      root_(root),
      view_(view),
      assets_(device.Textures().DefaultTexture(), resources),
      unitQuadVertices_(kUnitQuad.data(), sizeof(kUnitQuad)),
      unitQuadIndices_(kQuadIndices, sizeof(kQuadIndices)) {}

SpriteEffect* SpriteManager::SpriteFx() const {
  SpriteEffect* effect = device_.Effects().sprite.get();
  return effect != nullptr && effect->IsLoaded() ? effect : nullptr;
}

void SpriteManager::SetLevel(Database& level) { sLevelName_ = level.Name(); }

void SpriteManager::Draw(const glm::mat4& viewProj, float renderWidth, float renderHeight) {
  const DataHandle<Database> level = FindLevel(root_, sLevelName_);
  const DataHandle<Database> objects =
      level ? level->Find<Database>(KeyOf(WellKnown::GameObjects)) : DataHandle<Database>();
  SpriteEffect* fx = SpriteFx();
  if (!objects || fx == nullptr) return;
  device_.Assembler().SetInputLayout(LayoutKind::kPosTex);
  device_.Assembler().SetTopology(Topology::kTriangleList);
  fx->SetFloat(fx->Var(SpriteVar::gScreenWidth), renderWidth);
  fx->SetFloat(fx->Var(SpriteVar::gScreenHeight), renderHeight);
  fx->SetMatrix(fx->Var(SpriteVar::gTexTransform), glm::mat4(1.0f));
  const glm::vec2 renderSize(renderWidth, renderHeight);
  // HUD over world: the screen's sprites are drawn last.
  DrawComponents(*objects, WellKnown::SpriteWorld, viewProj, renderSize);
  DrawComponents(*objects, WellKnown::SpriteHUD, viewProj, renderSize);
}

void SpriteManager::DrawComponents(const Database& objects, WellKnown kind,
                                   const glm::mat4& viewProj, glm::vec2 renderSize) {
  SpriteEffect& fx = *SpriteFx();
  const bool isWorld = kind == WellKnown::SpriteWorld;
  for (const Database::Record& record : objects.Records()) {
    const DataHandle<Database> object = objects.Find<Database>(record.name);
    // A replaced object leaves a stale record behind; only the live one is drawn.
    if (!object || object.Entry() != record.entry) continue;
    const DataHandle<Database> component = object->Find<Database>(KeyOf(kind));
    if (!component) continue;
    const SpriteSettings sprite = ReadSpriteSettings(*component);
    Placement placement{};
    placement.isWorld = isWorld;
    if (isWorld) {
      fx.SetMatrix(fx.Var(SpriteVar::gWVP), viewProj * WorldMatrix(*object, sprite));
      placement.anchor = glm::vec2(0.0f);
      placement.unitsPerPixel = kWorldUnitsPerPixel;
    } else {
      placement.anchor = sprite.screenPosition * renderSize;
      placement.unitsPerPixel = renderSize.y / kHudReferenceHeight;
    }
    fx.SetVector(fx.Var(SpriteVar::gColor), sprite.color);
    if (sprite.isText) {
      DrawText(sprite, placement);
    } else if (sprite.imageFileName != nullptr) {
      const SpriteImage& image = assets_.FindImage(*sprite.imageFileName);
      glm::vec2 size = glm::vec2(image.width, image.height) * sprite.pixelScale;
      if (sprite.width > 0.0f) {
        size = glm::vec2(sprite.width, sprite.width * static_cast<float>(image.height) /
                                           static_cast<float>(image.width));
      }
      DrawImage(sprite, image, size * placement.unitsPerPixel, placement);
    }
  }
}

void SpriteManager::DrawImage(const SpriteSettings& sprite, const SpriteImage& image,
                              glm::vec2 size, const Placement& placement) {
  SpriteEffect& fx = *SpriteFx();
  const glm::vec2 origin = placement.anchor - AnchorShift(sprite, size);
  fx.SetRaw(fx.Var(SpriteVar::gPosition), &origin[0], sizeof(origin));
  fx.SetFloat(fx.Var(SpriteVar::gSpriteWidth), size.x);
  fx.SetFloat(fx.Var(SpriteVar::gSpriteHeight), size.y);
  fx.SetFloat(fx.Var(SpriteVar::gFontScale), 1.0f);
  fx.SetTexture(fx.Var(SpriteVar::gFontTexture), image.texture);
  InputAssembler& assembler = device_.Assembler();
  assembler.BindVertexBuffer(0, unitQuadVertices_, sizeof(GlyphVertex));
  assembler.BindIndexBuffer(unitQuadIndices_);
  const TechniqueHandle technique =
      fx.Tech(placement.isWorld ? SpriteTech::SpriteWorldTech : SpriteTech::SpriteHUDTech);
  fx.ApplyPass(technique, 0);
  assembler.DrawIndexed16(6);
}

void SpriteManager::DrawText(const SpriteSettings& sprite, const Placement& placement) {
  if (sprite.font == nullptr) return;
  const std::string* message = sprite.message;
  if (message == nullptr && sprite.messageNumber) {
    char digits[32];
    std::snprintf(digits, sizeof(digits), "%g", *sprite.messageNumber);
    numberText_ = digits;
    message = &numberText_;
  }
  if (message == nullptr) return;
  const Font* font = assets_.FindFont(*sprite.font);
  if (font == nullptr) {
    const SpriteImage box{assets_.DefaultTexture(), 1, 1};
    const glm::vec2 size = glm::vec2(0.5f * static_cast<float>(message->size()), 1.0f) *
                           kMissingFontLine * sprite.pixelScale * placement.unitsPerPixel;
    DrawImage(sprite, box, size, placement);
    return;
  }
  if (!(font->LineHeight() > 0.0f)) return;
  const float unitsPerLine = font->LineHeight() * sprite.pixelScale * placement.unitsPerPixel;
  const float wrapWidth =
      sprite.width > 0.0f ? sprite.width * placement.unitsPerPixel / unitsPerLine : 0.0f;
  LayOutText(font->Data(), *message, wrapWidth, sprite.horizontal, block_);
  if (block_.skippedCharacters) assets_.WarnMissingCharacters(*sprite.font);

  SpriteEffect& fx = *SpriteFx();
  const glm::vec2 origin =
      placement.anchor - AnchorShift(sprite, glm::vec2(block_.width, block_.height) * unitsPerLine);
  fx.SetFloat(fx.Var(SpriteVar::gSpriteWidth), 1.0f);
  fx.SetFloat(fx.Var(SpriteVar::gSpriteHeight), 1.0f);
  fx.SetFloat(fx.Var(SpriteVar::gFontScale), unitsPerLine);
  fx.SetTexture(fx.Var(SpriteVar::gFontTexture), font->PageTexture());
  const TechniqueHandle technique =
      fx.Tech(placement.isWorld ? SpriteTech::TextWorldTech : SpriteTech::TextHUDTech);
  InputAssembler& assembler = device_.Assembler();
  for (const PlacedGlyph& glyph : block_.glyphs) {
    const glm::vec2 position = origin + glm::vec2(glyph.x, glyph.y) * unitsPerLine;
    fx.SetRaw(fx.Var(SpriteVar::gPosition), &position[0], sizeof(position));
    assembler.BindVertexBuffer(0, font->VertexBuffer(glyph.id), sizeof(GlyphVertex));
    assembler.BindIndexBuffer(font->IndexBuffer(glyph.id));
    fx.ApplyPass(technique, 0);
    assembler.DrawIndexed16(6);
  }
}

glm::mat4 SpriteManager::WorldMatrix(const Database& object, const SpriteSettings& sprite) const {
  const glm::mat4 frame = ObjectFrame(object);
  if (sprite.isBillboarded) {
    // The camera's axes in the world are the rows of the view rotation: the sprite's x and y
    // follow the screen's, whatever the object's own rotation.
    const glm::vec3 position = frame * glm::vec4(sprite.relativePosition, 1.0f);
    return glm::translate(glm::mat4(1.0f), position) *
           glm::mat4(glm::transpose(glm::mat3(view_)));
  }
  const glm::vec3& r = sprite.relativeRotation;
  const glm::mat4 identity(1.0f);
  // Yaw, then pitch, then roll, as the object rotations are read.
  return frame * glm::translate(identity, sprite.relativePosition) *
         glm::rotate(identity, r.y, glm::vec3(0, 1, 0)) *
         glm::rotate(identity, r.x, glm::vec3(1, 0, 0)) *
         glm::rotate(identity, r.z, glm::vec3(0, 0, 1));
}

}  // namespace grindle::gfx
