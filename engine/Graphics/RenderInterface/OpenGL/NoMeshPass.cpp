// Built only where the mesh component handler's sources are absent: the renderer then draws no
// meshes instead of failing to link.
#include "Graphics/RenderInterface/OpenGL/MeshPass.h"

namespace grindle::gfx {

std::unique_ptr<MeshPass> CreateMeshPass(Database&) { return nullptr; }

}  // namespace grindle::gfx
