#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteSettings.h"

#include <algorithm>
#include <cctype>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/DatabaseValues.h"

namespace grindle::gfx {

namespace {

std::string Lower(const std::string& text) {
  std::string lower = text;
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

bool IsCentre(const std::string& lower) { return lower == "center" || lower == "centre"; }

float Number(const Database& component, WellKnown key, float fallback) {
  return static_cast<float>(ReadNumber(component, KeyOf(key), fallback));
}

const std::string* Text(const Database& component, WellKnown key) {
  const DataHandle<std::string> text = component.Find<std::string>(KeyOf(key));
  return text ? text.Get() : nullptr;
}

}  // namespace

HorizontalAlign ParseHorizontalAlign(const std::string& text) {
  const std::string lower = Lower(text);
  if (IsCentre(lower)) return HorizontalAlign::kCenter;
  return lower == "right" ? HorizontalAlign::kRight : HorizontalAlign::kLeft;
}

VerticalAlign ParseVerticalAlign(const std::string& text) {
  const std::string lower = Lower(text);
  if (IsCentre(lower)) return VerticalAlign::kCenter;
  return lower == "bottom" ? VerticalAlign::kBottom : VerticalAlign::kTop;
}

SpriteSettings ReadSpriteSettings(const Database& component) {
  SpriteSettings s;
  s.isText = Number(component, WellKnown::IsText, 0.0f) != 0.0f;
  s.imageFileName = Text(component, WellKnown::ImageFileName);
  s.font = Text(component, WellKnown::Font);
  s.message = Text(component, WellKnown::Message);
  if (const auto color = ReadFour(component, KeyOf(WellKnown::Color))) s.color = *color;
  s.pixelScale = Number(component, WellKnown::PixelScale, 1.0f);
  s.width = Number(component, WellKnown::Width, 0.0f);
  if (const std::string* h = Text(component, WellKnown::HorizontalAlignment))
    s.horizontal = ParseHorizontalAlign(*h);
  if (const std::string* v = Text(component, WellKnown::VerticalAlignment))
    s.vertical = ParseVerticalAlign(*v);
  s.screenPosition = {Number(component, WellKnown::ScreenPositionX, 0.0f),
                      Number(component, WellKnown::ScreenPositionY, 0.0f)};
  s.relativePosition = {Number(component, WellKnown::RelativePositionX, 0.0f),
                        Number(component, WellKnown::RelativePositionY, 0.0f),
                        Number(component, WellKnown::RelativePositionZ, 0.0f)};
  s.relativeRotation = {Number(component, WellKnown::RelativeRotationX, 0.0f),
                        Number(component, WellKnown::RelativeRotationY, 0.0f),
                        Number(component, WellKnown::RelativeRotationZ, 0.0f)};
  s.isBillboarded = Number(component, WellKnown::IsBillboarded, 0.0f) != 0.0f;
  return s;
}

}  // namespace grindle::gfx
