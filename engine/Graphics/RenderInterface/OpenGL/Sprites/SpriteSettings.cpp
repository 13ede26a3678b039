#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteSettings.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Core/DatabaseNumbers.h"

namespace grindle::gfx {

namespace {

// Case-insensitive, without copying: this runs for every sprite every frame.
bool Is(const std::string& text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(), [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) == b;
  });
}

bool IsCentre(const std::string& text) { return Is(text, "center") || Is(text, "centre"); }

float Number(const Database& component, WellKnown key, float fallback) {
  return static_cast<float>(ReadNumber(component, KeyOf(key), fallback));
}

const std::string* Text(const Database& component, WellKnown key) {
  const DataHandle<std::string> text = component.Find<std::string>(KeyOf(key));
  return text ? text.Get() : nullptr;
}

// "left"/"center"/"right" and "top"/"center"/"bottom", any case ("centre" too); else the first.
HorizontalAlign ParseHorizontalAlign(const std::string& text) {
  if (IsCentre(text)) return HorizontalAlign::kCenter;
  return Is(text, "right") ? HorizontalAlign::kRight : HorizontalAlign::kLeft;
}

VerticalAlign ParseVerticalAlign(const std::string& text) {
  if (IsCentre(text)) return VerticalAlign::kCenter;
  return Is(text, "bottom") ? VerticalAlign::kBottom : VerticalAlign::kTop;
}

}  // namespace

SpriteSettings ReadSpriteSettings(const Database& component) {
  SpriteSettings s;
  s.isText = Number(component, WellKnown::IsText, 0.0f) != 0.0f;
  s.imageFileName = Text(component, WellKnown::ImageFileName);
  s.font = Text(component, WellKnown::Font);
  s.message = Text(component, WellKnown::Message);
  if (s.message == nullptr && component.FindEntry(KeyOf(WellKnown::Message)) != nullptr)
    s.messageNumber = ReadNumber(component, KeyOf(WellKnown::Message), 0.0);
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
