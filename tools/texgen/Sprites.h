// The demo game's sprite images (icons and a menu panel) with transparency, drawn from signed
// distances so edges are smooth at any size. Deterministic, like the textures.
#pragma once

#include <filesystem>

// Writes Potato, Speed, Shield, Fuse and Panel (.png) into GAME_DIR/Assets/Sprites.
bool WriteSprites(const std::filesystem::path& gameDir);
