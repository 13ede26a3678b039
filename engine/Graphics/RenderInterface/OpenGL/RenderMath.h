// The renderer's fixed arithmetic: projection matrices, field-of-view clamping, the letterbox scale
// of the final composite and the resolution names "ChangeResolution" accepts. Pure functions, any
// thread. Matrices are GLM values whose storage is the row-major layout used with row vectors
// (v x M); a product A x B in that convention is B * A in GLM.
#pragma once

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <optional>
#include <string_view>

namespace grindle::gfx {

inline constexpr float kPi = 3.14159265358979323846f;
inline constexpr float kNearPlane = 1.0f;
inline constexpr float kFarPlane = 1000.0f;

// A negative request keeps `current`; otherwise the request clamped to [0.001, pi].
float ClampFieldOfView(float current, float requested);

// Right-handed perspective (near 1, far 1000, depth 0..1) for the render aspect.
glm::mat4 PerspectiveMatrix(float fieldOfView, float aspect);
// Right-handed orthographic over width x height pixels, depth range 0..1000.
glm::mat4 OrthographicMatrix(float width, float height);
// Right-handed look-at from `eye` along `direction` with `up`.
glm::mat4 LookAtMatrix(const glm::vec3& eye, const glm::vec3& direction, const glm::vec3& up);

// Scale of the final composite that keeps the render aspect inside the window: one component is 1
// and the other shrinks to leave bars (top and bottom for taller windows, sides for wider ones).
glm::vec2 LetterboxScale(int clientWidth, int clientHeight, int renderWidth, int renderHeight);

struct Resolution {
  int width;
  int height;
};
// The resolution a "ChangeResolution" text names; only the exact table texts match.
std::optional<Resolution> ResolutionFromText(std::string_view text);

// The camera basis from a look direction: normalised direction, right = normalise(dir x worldUp),
// up = right x dir. A zero direction gives NaN components, as the vector library does.
struct CameraBasis {
  glm::vec3 direction;
  glm::vec3 right;
  glm::vec3 up;
};
CameraBasis CameraBasisFromDirection(const glm::vec3& direction);

}  // namespace grindle::gfx
