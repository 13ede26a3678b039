// Fonts and sprite images are loaded once and shared, and a file written while the game runs
// (a font, its page, an image, or a font that was missing until now) replaces the old one at the
// next resource update. Real files in a scratch game folder, watched by the real resource manager.
#include <stb_image_write.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>
#include <vector>

#include "Core/ResourceManager.h"
#include "Core/ThreadManager.h"
#include "Eventually.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/SpriteAssets.h"
#include "RendererFixture.h"
#include "TempWorkDir.h"

namespace grindle::gfx {
namespace {

namespace fs = std::filesystem;

void WriteImage(const fs::path& path, int width, int height) {
  const std::vector<unsigned char> pixels(static_cast<size_t>(width * height * 4), 255);
  ASSERT_NE(stbi_write_png(path.c_str(), width, height, 4, pixels.data(), width * 4), 0);
}

void WriteFont(const fs::path& path, int lineHeight) {
  std::ofstream(path) << "common lineHeight=" << lineHeight
                      << " base=8 scaleW=8 scaleH=8 pages=1 packed=0\n"
                         "page id=0 file=Mini_0.png\nchars count=1\n"
                         "char id=65 x=0 y=0 width=4 height=6 xoffset=0 yoffset=1 xadvance=5 "
                         "page=0 chnl=15\nkernings count=0\n";
}

class SpriteAssetsTest : public RendererFixture {
 protected:
  void SetUp() override {
    RendererFixture::SetUp();
    fs::remove_all(tree_);
    fs::create_directories(tree_ / "Assets/Sprites");
    fs::create_directories(tree_ / "Assets/Fonts");
    WriteImage(tree_ / "Assets/Sprites/Dot.png", 2, 2);
    WriteImage(tree_ / "Assets/Fonts/Mini_0.png", 8, 8);
    WriteFont(tree_ / "Assets/Fonts/Mini.fnt", 10);
    // The assets read relative to the working directory, as the game does from its folder.
    fs::current_path(tree_);
  }
  void TearDown() override {
    fs::current_path(GRINDLE_GAME_DIR);
    fs::remove_all(tree_);
  }

  static bool UpdateUntil(ResourceManager& resources, const std::function<bool()>& done) {
    return Eventually([&] {
      resources.Update();
      return done();
    });
  }

  const fs::path tree_ = ScratchPath("grindle_sprite_assets");
};

TEST_F(SpriteAssetsTest, SharedOnceAndReplacedWhenTheirFilesAreWritten) {
  ThreadManager threads(2, 10);
  ResourceManager resources(threads, messages_, ".");
  SpriteAssets assets(Renderer().Textures().DefaultTexture(), &resources);

  const GLuint dot = assets.FindImage("Dot.png").texture;
  EXPECT_EQ(assets.FindImage("Dot.png").texture, dot);
  EXPECT_EQ(assets.FindImage("Dot.png").width, 2);
  const Font* mini = assets.FindFont("Mini");
  ASSERT_NE(mini, nullptr);
  EXPECT_EQ(assets.FindFont("Mini"), mini);
  EXPECT_EQ(mini->LineHeight(), 10.0f);
  // One immutable quad per character of the file: four 20-byte vertices, six 16-bit indices.
  EXPECT_EQ(mini->VertexBuffer('A').Size(), 80u);
  EXPECT_EQ(mini->IndexBuffer('A').Size(), 12u);
  EXPECT_EQ(mini->VertexBuffer('B').Id(), 0u);
  EXPECT_NE(mini->PageTexture(), 0u);
  std::string printed = CaptureStdout([&] { EXPECT_EQ(assets.FindFont("Later"), nullptr); });
  EXPECT_NE(printed.find("Font Assets/Fonts/Later.fnt not found"), std::string::npos);

  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  WriteImage(tree_ / "Assets/Sprites/Dot.png", 4, 2);
  EXPECT_TRUE(UpdateUntil(resources, [&] { return assets.FindImage("Dot.png").width == 4; }));
  EXPECT_NE(assets.FindImage("Dot.png").texture, Renderer().Textures().DefaultTexture());

  WriteFont(tree_ / "Assets/Fonts/Mini.fnt", 20);
  EXPECT_TRUE(UpdateUntil(resources, [&] { return assets.FindFont("Mini")->LineHeight() == 20; }));

  // A page written again rebuilds its font, and a font saved after it was missing now loads.
  const Font* before = assets.FindFont("Mini");
  WriteImage(tree_ / "Assets/Fonts/Mini_0.png", 8, 8);
  WriteFont(tree_ / "Assets/Fonts/Later.fnt", 16);
  EXPECT_TRUE(UpdateUntil(resources, [&] { return assets.FindFont("Later") != nullptr; }));
  EXPECT_EQ(assets.FindFont("Later")->LineHeight(), 16.0f);
  EXPECT_TRUE(UpdateUntil(resources, [&] { return assets.FindFont("Mini") != before; }));
}

}  // namespace
}  // namespace grindle::gfx
