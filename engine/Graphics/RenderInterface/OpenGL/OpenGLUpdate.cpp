// The renderer's per-frame state: camera from the level's main camera (or the free camera), the
// debug view keys, the animation clocks, the tracked object and the glow target swap.
#include <cmath>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/RenderInterface/OpenGL/DatabaseValues.h"
#include "Graphics/RenderInterface/OpenGL/LightManager.h"
#include "Graphics/RenderInterface/OpenGL/OpenGLInterface.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"

namespace grindle::gfx {

namespace {

bool IsGamePaused(const Database& root) {
  if (const DataHandle<bool> paused = root.Find<bool>(KeyOf(WellKnown::isGamePaused)))
    return *paused;
  return ReadDouble(root, KeyOf(WellKnown::isGamePaused), 0.0) != 0.0;
}

glm::vec3 ReadPosition(const Database& database) {
  return {static_cast<float>(ReadDouble(database, KeyOf(WellKnown::PositionX), 0.0)),
          static_cast<float>(ReadDouble(database, KeyOf(WellKnown::PositionY), 0.0)),
          static_cast<float>(ReadDouble(database, KeyOf(WellKnown::PositionZ), 0.0))};
}

}  // namespace

Database* OpenGLInterface::CurrentGameObjects() const {
  const DataHandle<std::string> current = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const DataHandle<Database> levels = root_.Find<Database>(KeyOf(WellKnown::Levels));
  if (!current || !levels) return nullptr;
  const DataHandle<Database> level = levels->Find<Database>(*current);
  if (!level) return nullptr;
  return level->Find<Database>(KeyOf(WellKnown::GameObjects)).Get();
}

void OpenGLInterface::UpdateCamera(Database& gameObjects, float dt) {
  const DataHandle<Database> mainCamera = gameObjects.Find<Database>(KeyOf(WellKnown::MainCamera));
  if (!mainCamera) return;
  const DataHandle<Database> camera = mainCamera->Find<Database>(KeyOf(WellKnown::Camera));
  if (!camera) return;
  slowClock_ += dt * 0.1f;
  eyePosition_ = ReadPosition(*camera);
  const glm::vec3 direction(static_cast<float>(ReadDouble(*camera, KeyOf(WellKnown::viewX), 0.0)),
                            static_cast<float>(ReadDouble(*camera, KeyOf(WellKnown::viewY), 0.0)),
                            static_cast<float>(ReadDouble(*camera, KeyOf(WellKnown::viewZ), 0.0)));
  const CameraBasis basis = CameraBasisFromDirection(direction);
  lookDirection_ = basis.direction;

  // The level database is the parent of GameObjects; CurrentCamera sits beside it.
  const DataHandle<std::string> current = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  Database& level = *root_.Find<Database>(KeyOf(WellKnown::Levels))->Find<Database>(*current);
  DataHandle<Database> target = level.Find<Database>(KeyOf(WellKnown::CurrentCamera));
  if (!target) target = level.Add<Database>("CurrentCamera");
  const std::pair<WellKnown, float> values[] = {{WellKnown::PositionX, eyePosition_.x},
                                                {WellKnown::PositionY, eyePosition_.y},
                                                {WellKnown::PositionZ, eyePosition_.z},
                                                {WellKnown::ViewX, basis.direction.x},
                                                {WellKnown::ViewY, basis.direction.y},
                                                {WellKnown::ViewZ, basis.direction.z},
                                                {WellKnown::UpX, basis.up.x},
                                                {WellKnown::UpY, basis.up.y},
                                                {WellKnown::UpZ, basis.up.z}};
  for (const auto& [key, value] : values) WriteDouble(*target, KeyOf(key), value);
  view_ = LookAtMatrix(eyePosition_, basis.direction, basis.up);
}

void OpenGLInterface::UpdateTrackedObject(Database& gameObjects) {
  // Looked up again each frame: a handle kept across frames could outlive a level unload.
  const DataHandle<Database> potato = gameObjects.Find<Database>(KeyOf(WellKnown::Potato));
  trackedTransform_ =
      potato ? potato->Find<Database>(KeyOf(WellKnown::Transform)) : DataHandle<Database>();
  if (!trackedTransform_) return;
  const glm::vec3 position = ReadPosition(*trackedTransform_);
  lights_->SetTrackedSpotPosition(position.x, position.z);
  trackedPoint_ = glm::vec4(position.x, position.y + 5.0f, position.z, 1.0f);
}

void OpenGLInterface::Update(float dt) {
  if (IsGamePaused(root_)) return;
  Database* gameObjects = CurrentGameObjects();
  if (gameObjects != nullptr) UpdateCamera(*gameObjects, dt);
  if (freeCamera_.IsEnabled()) {
    view_ = freeCamera_.View();
    eyePosition_ = freeCamera_.Position();
    lookDirection_ = freeCamera_.Look();
  }
  for (int digit = 0; digit <= 3; ++digit) {
    if (IsDigitKeyHeld(digit)) debugViewIndex_ = digit;
  }
  animationClock_ += dt;
  lights_->SetAnimationAngles(std::sin(animationClock_ * 0.2f) * 90.0f,
                              std::cos(animationClock_ * 0.2f) * 90.0f);
  if (gameObjects != nullptr) UpdateTrackedObject(*gameObjects);
  if (currentGlow_ == &glowTargetA_) {
    currentGlow_ = &glowTargetB_;
    previousGlow_ = &glowTargetA_;
  } else {
    currentGlow_ = &glowTargetA_;
    previousGlow_ = &glowTargetB_;
  }
  particles_.SetEyePosition(eyePosition_);
}

}  // namespace grindle::gfx
