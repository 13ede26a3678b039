// Fixtures of the mesh tests: a level database built by hand, the handler hearing the level
// messages through a real MessageHandler as the renderer forwards them, and, where meshes are
// uploaded or drawn, a hidden SDL window (offscreen driver) with an OpenGL 4.5 core context.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/WellKnownKeys.h"
#include "Graphics/MeshCompHandler.h"

namespace grindle::gfx {

// A level with its objects and the handler listening as the renderer does. No GL context: only
// what runs before a mesh is uploaded may be used without the derived fixture.
class MeshLevelFixture : public testing::Test {
 protected:
  static void SetUpTestSuite() { InternWellKnownKeys(); }

  void SetUp() override {
    meshes_ = std::make_unique<MeshCompHandler>(root_);
    root_.Add<Database>("Levels");
    const auto forward = [this](MessageArgs args) {
      meshes_->AddObject(*args.Get<DataHandle<Database>>(0), *args.Get<std::string>(1));
    };
    messages_.Listen("msgLevelObjectCreated", "Renderer", forward);
    messages_.Listen("msgObjectCreated", "Renderer", forward);
    messages_.Listen("msgObjectDestroyed", "Renderer", [this](MessageArgs args) {
      meshes_->RemoveObject(*args.Get<std::string>(1));
    });
  }
  void TearDown() override { meshes_.reset(); }

  Database& AddLevel(const std::string& name, bool withMeshList = true) {
    Database& level = *root_.Find<Database>("Levels")->Add<Database>(name);
    level.Add<Database>("GameObjects");
    if (withMeshList) level.Add<Database>("ComponentLists")->Add<Database>("Meshes");
    root_.Add<std::string>("CurrentLevel", name);
    return level;
  }

  static DataHandle<Database> AddObject(Database& level, const std::string& name,
                                        const char* fileName) {
    DataHandle<Database> object = level.Find<Database>("GameObjects")->Add<Database>(name);
    if (fileName != nullptr) {
      Database& mesh = *object->Add<Database>("Mesh");
      if (*fileName != '\0') mesh.Add<std::string>("Filename", fileName);
      mesh.Add<double>("HasTexture", 0.0);
    }
    return object;
  }

  void Announce(DataHandle<Database> object, const std::string& name) {
    messages_.SendArgs("msgLevelObjectCreated", object, name,
                       *root_.Find<std::string>("CurrentLevel"));
    messages_.Deliver(MessageHandler::kDeliverAll);
  }

  static Database& MeshList(Database& level) {
    return *level.Find<Database>("ComponentLists")->Find<Database>("Meshes");
  }
  static int MeshIndexOf(const DataHandle<Database>& object) {
    return *object->Find<Database>("Mesh")->Find<int>("MeshIndex");
  }

  Database root_;
  MessageHandler messages_;
  std::unique_ptr<MeshCompHandler> meshes_;
};

// Adds the OpenGL context that uploading meshes needs, once for the suite.
// The context is opened once per process and kept to its end: closing it unloads the driver,
// whose own allocations would then show up as leaks from unknown modules.
class MeshGlFixture : public MeshLevelFixture {
 protected:
  static void SetUpTestSuite() {
    MeshLevelFixture::SetUpTestSuite();
    ASSERT_TRUE(OpenContext()) << SDL_GetError();
  }

 private:
  static bool OpenContext() {
    static const bool isOpen = [] {
      setenv("SDL_VIDEODRIVER", "offscreen", 0);
      if (SDL_Init(SDL_INIT_VIDEO) != 0) return false;
      SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
      SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 5);
      SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
      SDL_Window* window =
          SDL_CreateWindow("mesh tests", 0, 0, 64, 64, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
      return window != nullptr && SDL_GL_CreateContext(window) != nullptr;
    }();
    return isOpen;
  }
};

}  // namespace grindle::gfx
