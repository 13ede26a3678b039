// What a `SpriteHUD` or `SpriteWorld` component asks for, read from the database each frame so a
// script's change shows in the frame it was made. Main thread (the database has no lock). Every
// key is optional; absent keys take the defaults below. Names point into the component and stay
// valid until the component changes.
#pragma once

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <optional>
#include <string>

#include "Graphics/RenderInterface/OpenGL/Sprites/TextLayout.h"

namespace grindle {
class Database;
}

namespace grindle::gfx {

struct SpriteSettings {
  bool isText = false;
  const std::string* imageFileName = nullptr;  // sprites (null: none given)
  const std::string* font = nullptr;           // text
  const std::string* message = nullptr;        // text
  // A `Message` a script wrote as a number (a score, a count) instead of a string.
  std::optional<double> messageNumber;
  glm::vec4 color{1.0f};
  float pixelScale = 1.0f;
  float width = 0.0f;  // wrap width of text, shown width of images; 0: none
  HorizontalAlign horizontal = HorizontalAlign::kLeft;
  VerticalAlign vertical = VerticalAlign::kTop;
  glm::vec2 screenPosition{0.0f};     // HUD: 0..1 of the render target
  glm::vec3 relativePosition{0.0f};   // world: in the object's frame
  glm::vec3 relativeRotation{0.0f};   // world: radians about x, y, z
  bool isBillboarded = false;         // world: faces the camera
};

SpriteSettings ReadSpriteSettings(const Database& component);

}  // namespace grindle::gfx
