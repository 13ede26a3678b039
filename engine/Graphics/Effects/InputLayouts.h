// The vertex formats, one layout (a GL vertex array object) each, with attributes found by semantic
// name in the input signature of pass 0 of technique 0 of the effect the layout is created from.
// The renderer's device objects own the one set; main thread, GL context current. Exactly one
// layout is current; buffers are bound into the current one, so bind the layout first, then its
// buffers, then draw.
#pragma once

#include <epoxy/gl.h>

#include <array>
#include <cstdint>

namespace grindle::gfx {

struct EffectSlots;

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

class InputLayouts {
 public:
  InputLayouts() = default;
  ~InputLayouts() { Destroy(); }
  InputLayouts(const InputLayouts&) = delete;
  InputLayouts& operator=(const InputLayouts&) = delete;

  // (Re)creates the layouts of one set from the effects now in the slots, then rebinds the
  // current kind.
  void CreateStartup(const EffectSlots& effects);
  void CreateScene(const EffectSlots& effects);
  void Destroy();

  // Makes the layout current (a layout not created yet binds an empty one so nothing stale draws).
  void Set(LayoutKind kind);
  LayoutKind Current() const { return current_; }
  // The GL vertex array object now bound (what buffers are bound into).
  GLuint CurrentObject() const { return currentObject_; }

 private:
  void CreateSet(bool isStartup, const EffectSlots& effects);

  std::array<GLuint, static_cast<size_t>(LayoutKind::kCount)> layouts_{};
  GLuint empty_ = 0;
  LayoutKind current_ = LayoutKind::kPosNormalTex;
  GLuint currentObject_ = 0;
};

}  // namespace grindle::gfx
