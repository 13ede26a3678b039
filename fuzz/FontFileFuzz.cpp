// The bitmap font description reader on arbitrary text.
#include <cstdio>
#include <memory>

#include "FuzzInput.h"
#include "Graphics/RenderInterface/OpenGL/Sprites/FontFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string& path = grindle::fuzz::WriteInput(data, size, ".fnt");
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return 0;
  auto font = std::make_unique<grindle::gfx::FontFileData>();  // large: keep it off the stack
  grindle::gfx::ReadFontFile(file, path, *font);
  std::fclose(file);
  return 0;
}
