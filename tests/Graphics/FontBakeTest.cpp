// grindle_fontbake run as a program on a font from the fonts-dejavu-core package: it reproduces
// the shipped Hud font byte for byte (so the golden images of Hud text also show its output),
// writes what the loader reads, and refuses bad values (the command-line convention itself is
// checked with the other tools).
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"
#include "TempWorkDir.h"

namespace grindle::gfx {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDejaVuBold = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf";

int Bake(const std::string& arguments) {
  const std::string command = std::string(GRINDLE_FONTBAKE) + " " + arguments + " >/dev/null 2>&1";
  const int status = std::system(command.c_str());
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(FontBakeTest, RebakingTheHudFontReproducesTheShippedFiles) {
  ASSERT_TRUE(fs::exists(kDejaVuBold)) << "install fonts-dejavu-core (scripts/setup.sh)";
  const fs::path out = ScratchPath("grindle_bake");
  fs::create_directories(out);
  ASSERT_EQ(Bake(std::string(kDejaVuBold) + " 32 " + (out / "Hud.fnt").string() +
                 " --chars 32-126,160-255"),
            0);
  const fs::path shipped = fs::path(GRINDLE_GAME_DIR) / "Assets/Fonts";
  EXPECT_EQ(ReadFile(out / "Hud.fnt"), ReadFile(shipped / "Hud.fnt"));
  EXPECT_EQ(ReadFile(out / "Hud_0.png"), ReadFile(shipped / "Hud_0.png"));

  auto font = std::make_unique<FontFileData>();
  std::FILE* file = std::fopen((out / "Hud.fnt").c_str(), "r");
  ReadFontFile(file, "Hud.fnt", *font);
  std::fclose(file);
  EXPECT_EQ(font->scaleW, font->scaleH);
  EXPECT_EQ(font->pageFile, "Hud_0.png");
  for (int c = 32; c < 127; ++c) EXPECT_TRUE(font->defined[static_cast<size_t>(c)]) << c;
  EXPECT_TRUE(font->defined[0xE9]);  // é
  EXPECT_LT(font->glyphs['A'].kerning['V'], 0.0f);
  EXPECT_EQ(font->glyphs['H'].kerning['H'], 0.0f);
}

TEST(FontBakeTest, BadArgumentsAreRefused) {
  const fs::path out = ScratchPath("grindle_bake_bad", ".fnt");
  const std::string font = kDejaVuBold;
  const struct {
    std::string arguments;
    int status;
  } cases[] = {
      {font + " 32 " + out.string() + " --chars 200-100", 2},
      {font + " 32 " + out.string() + " --chars 32-300", 2},
      {font + " 2 " + out.string(), 2},
      {"/nonexistent.ttf 32 " + out.string(), 1},
  };
  for (const auto& c : cases) EXPECT_EQ(Bake(c.arguments), c.status) << c.arguments;
  EXPECT_FALSE(fs::exists(out));
}

}  // namespace
}  // namespace grindle::gfx
