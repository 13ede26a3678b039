#include "Graphics/RenderInterface/OpenGL/FrameState.h"

#include <utility>

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"
#include "Core/DatabaseNumbers.h"
#include "Graphics/RenderInterface/OpenGL/LevelLookup.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Input/DebugKeys.h"
#include "Input/Keyboard.h"

namespace grindle::gfx {

namespace {

constexpr float kTrackedPointLift = 5.0f;

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

void FrameState::SetLens(float fieldOfView, int renderWidth, int renderHeight) {
  const float aspect = static_cast<float>(renderWidth) / static_cast<float>(renderHeight);
  projection_ = PerspectiveMatrix(fieldOfView, aspect);
  orthographic_ =
      OrthographicMatrix(static_cast<float>(renderWidth), static_cast<float>(renderHeight));
}

void FrameState::OnLevelStart(Database& level) {
  const DataHandle<Database> camera = level.Add<Database>("CurrentCamera");
  for (const char* name :
       {"PositionX", "PositionY", "PositionZ", "ViewX", "ViewY", "ViewZ", "UpX", "UpY", "UpZ"}) {
    camera->Add<double>(name);
  }
  if (const DataHandle<Database> objects = level.Find<Database>(KeyOf(WellKnown::GameObjects))) {
    for (const Database::Record& record : objects->Records()) {
      if (record.name != "Potato") continue;
      if (const DataHandle<Database> potato = objects->Find<Database>(record.name)) {
        trackedTransform_ = potato->Find<Database>(KeyOf(WellKnown::Transform));
      }
    }
  }
}

void FrameState::OnKeyboard(const Keyboard& keyboard) {
  freeCamera_.OnKeyboard(keyboard);
  for (int view = 0; view < debugkeys::kDebugViewCount; ++view) {
    if (keyboard.IsTriggered(debugkeys::kFirstDebugView + view)) debugViewIndex_ = view;
  }
}

void FrameState::OnMouse(const Mouse& mouse, int clientWidth, int clientHeight) {
  freeCamera_.OnMouse(mouse, clientWidth, clientHeight);
}

void FrameState::UpdateCamera(Database& level, Database& gameObjects, float dt) {
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

  // CurrentCamera sits beside GameObjects in the level.
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

void FrameState::UpdateTrackedObject(Database& gameObjects) {
  // Looked up again each frame: a handle kept across frames could outlive a level unload.
  const DataHandle<Database> potato = gameObjects.Find<Database>(KeyOf(WellKnown::Potato));
  trackedTransform_ =
      potato ? potato->Find<Database>(KeyOf(WellKnown::Transform)) : DataHandle<Database>();
  foundTracked_ = static_cast<bool>(trackedTransform_);
  if (!foundTracked_) return;
  const glm::vec3 position = ReadPosition(*trackedTransform_);
  trackedPoint_ = glm::vec4(position.x, position.y + kTrackedPointLift, position.z, 1.0f);
}

bool FrameState::Advance(float dt) {
  if (IsGamePaused(root_)) return false;
  foundTracked_ = false;
  const DataHandle<Database> level = FindCurrentLevel(root_);
  const DataHandle<Database> gameObjects =
      level ? level->Find<Database>(KeyOf(WellKnown::GameObjects)) : DataHandle<Database>();
  if (gameObjects) UpdateCamera(*level, *gameObjects, dt);
  if (freeCamera_.IsEnabled()) {
    view_ = freeCamera_.View();
    eyePosition_ = freeCamera_.Position();
    lookDirection_ = freeCamera_.Look();
  }
  animationClock_ += dt;
  if (gameObjects) UpdateTrackedObject(*gameObjects);
  return true;
}

}  // namespace grindle::gfx
