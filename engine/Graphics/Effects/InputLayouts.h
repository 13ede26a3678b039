// The vertex formats, one process-wide layout (a GL vertex array object) each, with attributes
// found by semantic name in the input signature of pass 0 of technique 0 of the effect that the
// layout is created from. Main thread, GL context current. Exactly one layout is current; buffers
// are bound into the current one, so bind the layout first, then its buffers, then draw.
#pragma once

#include <epoxy/gl.h>

#include <cstdint>

namespace grindle::gfx {

enum class LayoutKind : uint32_t {
  kPosNormalTex,   // 32-byte vertex: POSITION, NORMAL, TEXCOORD (draw-quad effect)
  kPosTex,         // POSITION, TEXCOORD (sprite effect)
  kPos,            // POSITION (sky effect)
  kParticle,       // stream-out vertex (explosion particle effect)
  kMesh,           // 44-byte vertex: POSITION, NORMAL, TEXCOORD, TANGENT (basic effect)
  kPosColor,       // 28-byte vertex: POSITION, COLOR (colour effect)
  kSkinned,        // 84-byte vertex (normal-map effect)
  kInstancedMesh,  // mesh vertex in slot 0, WORLD rows per instance in slot 1 (instanced effect)
  kCount
};

void CreateStartupLayouts();
void CreateSceneLayouts();
void DestroyLayouts();

// Makes the layout current (a layout not created yet binds an empty one so nothing stale draws).
void SetInputLayout(LayoutKind kind);
LayoutKind CurrentInputLayout();
// The GL vertex array object now bound (what buffers are bound into).
GLuint CurrentLayoutObject();

}  // namespace grindle::gfx
