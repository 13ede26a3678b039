#include "Graphics/RenderInterface/OpenGL/RenderMath.h"

#include <cmath>
#include <glm/geometric.hpp>
#include <string_view>

namespace grindle::gfx {

float ClampFieldOfView(float current, float requested) {
  if (requested < 0.0f) return current;
  if (requested < 0.001f) return 0.001f;
  if (requested > kPi) return kPi;
  return requested;
}

glm::mat4 PerspectiveMatrix(float fieldOfView, float aspect) {
  const float c = std::cos(fieldOfView * 0.5f) / std::sin(fieldOfView * 0.5f);
  const float depth = kFarPlane / (kNearPlane - kFarPlane);
  glm::mat4 m(0.0f);
  m[0][0] = c / aspect;
  m[1][1] = c;
  m[2][2] = depth;
  m[2][3] = -1.0f;
  m[3][2] = kNearPlane * depth;
  return m;
}

glm::mat4 OrthographicMatrix(float width, float height) {
  const float depth = 1.0f / (0.0f - kFarPlane);
  glm::mat4 m(0.0f);
  m[0][0] = 2.0f / width;
  m[1][1] = 2.0f / height;
  m[2][2] = depth;
  m[3][2] = 0.0f * depth;  // -0.0, as the zero near plane gives
  m[3][3] = 1.0f;
  return m;
}

glm::mat4 LookAtMatrix(const glm::vec3& eye, const glm::vec3& direction, const glm::vec3& up) {
  const glm::vec3 zAxis = glm::normalize(-direction);
  const glm::vec3 xAxis = glm::normalize(glm::cross(up, zAxis));
  const glm::vec3 yAxis = glm::cross(zAxis, xAxis);
  glm::mat4 m(1.0f);
  for (int i = 0; i < 3; ++i) {
    m[i][0] = xAxis[i];
    m[i][1] = yAxis[i];
    m[i][2] = zAxis[i];
  }
  m[3][0] = -glm::dot(xAxis, eye);
  m[3][1] = -glm::dot(yAxis, eye);
  m[3][2] = -glm::dot(zAxis, eye);
  return m;
}

glm::vec2 LetterboxScale(int clientWidth, int clientHeight, int renderWidth, int renderHeight) {
  const float windowAspect = static_cast<float>(clientWidth) / static_cast<float>(clientHeight);
  const float renderAspect = static_cast<float>(renderWidth) / static_cast<float>(renderHeight);
  glm::vec2 scale(1.0f, 1.0f);
  if (windowAspect <= renderAspect)
    scale.y = windowAspect / renderAspect;
  else
    scale.x = renderAspect / windowAspect;
  return scale;
}

std::optional<Resolution> ResolutionFromText(std::string_view text) {
  struct Entry {
    std::string_view text;
    Resolution resolution;
  };
  static constexpr Entry kTable[] = {
      {"1920x1080", {1920, 1080}}, {"1600x900", {1600, 900}}, {"1280x720", {1280, 720}},
      {"1024x576", {1024, 576}},   {"960x540", {960, 540}},   {"800x450", {800, 450}},
      {"640x360", {640, 360}},
  };
  for (const Entry& entry : kTable) {
    if (entry.text == text) return entry.resolution;
  }
  return std::nullopt;
}

CameraBasis CameraBasisFromDirection(const glm::vec3& direction) {
  // Written out rather than glm::normalize, whose zero-length result is not specified.
  const glm::vec3 dir = direction / std::sqrt(glm::dot(direction, direction));
  const glm::vec3 crossed = glm::cross(dir, glm::vec3(0.0f, 1.0f, 0.0f));
  const glm::vec3 right = crossed / std::sqrt(glm::dot(crossed, crossed));
  return {dir, right, glm::cross(right, dir)};
}

}  // namespace grindle::gfx
