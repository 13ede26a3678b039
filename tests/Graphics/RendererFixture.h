// A real renderer on a hidden SDL window (offscreen driver, Mesa llvmpipe): the graphics system
// synchronized, loaded and started as start-up does, with the working directory at game/ so the
// effect files and textures are the shipped ones. Helpers build levels and objects by hand and
// read the composited frame back.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <glm/mat4x4.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <string>
#include <vector>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Graphics/GraphicsLibraryInterface.h"

namespace grindle::gfx {

class OpenGLInterface;

struct Image {
  int width = 0;
  int height = 0;
  std::vector<unsigned char> rgba;  // top row first
  glm::vec4 At(int x, int y) const;
};

// One renderer serves a whole suite (compiling every effect on llvmpipe takes a while); each test
// starts with no levels, the default lights and post-processing, and a 320 x 180 window.
class RendererFixture : public testing::Test {
 protected:
  static constexpr int kWidth = 320;
  static constexpr int kHeight = 180;

  static void SetUpTestSuite();
  static void TearDownTestSuite();
  void SetUp() override;

  static OpenGLInterface& Renderer();
  void Deliver() { messages_.Deliver(MessageHandler::kDeliverAll); }
  // Update then Render, as the frame loop does, after delivering queued messages.
  void Frame(float dt = 1.0f / 60.0f);

  // A level with GameObjects and ComponentLists.Meshes, made current.
  Database& AddLevel(const std::string& name);
  // Announces every object of the level and completes its start-up.
  void StartLevel(const std::string& name);
  Database& AddCamera(Database& level, const glm::vec3& eye, const glm::vec3& direction);
  // An object with a Mesh component of `fileName`, a transform, a material and no textures.
  Database& AddMeshObject(Database& level, const std::string& name, const char* fileName,
                          const glm::vec3& position, const glm::vec3& scale,
                          const glm::vec4& diffuse);

  Image Capture();

  // Made in SetUpTestSuite, gone after TearDownTestSuite; tests use the references below.
  static std::unique_ptr<Database> sRoot_;
  static std::unique_ptr<MessageHandler> sMessages_;
  static SDL_Window* sWindow_;
  static std::unique_ptr<GraphicsInterface> sGraphics_;

  Database& root_ = *sRoot_;
  MessageHandler& messages_ = *sMessages_;
  GraphicsInterface& graphics_ = *sGraphics_;
};

}  // namespace grindle::gfx
