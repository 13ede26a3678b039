#include "Graphics/RenderInterface/OpenGL/SkyDome.h"

#include <cmath>
#include <glm/ext/matrix_transform.hpp>
#include <vector>

#include "Graphics/RenderInterface/OpenGL/RenderDevice.h"
#include "Graphics/RenderInterface/OpenGL/RenderMath.h"
#include "Graphics/RenderInterface/OpenGL/RenderStates.h"

namespace grindle::gfx {

namespace {

struct DomeGeometry {
  std::vector<glm::vec3> positions;
  std::vector<uint32_t> indices;
};

DomeGeometry BuildDome() {
  DomeGeometry dome;
  for (int stack = 0; stack <= kSkyStacks; ++stack) {
    const float phi = kPi * static_cast<float>(stack) / kSkyStacks;
    for (int slice = 0; slice <= kSkySlices; ++slice) {
      const float theta = 2.0f * kPi * static_cast<float>(slice) / kSkySlices;
      dome.positions.emplace_back(kSkyRadius * std::sin(phi) * std::cos(theta),
                                  kSkyRadius * std::cos(phi),
                                  kSkyRadius * std::sin(phi) * std::sin(theta));
    }
  }
  const uint32_t ring = kSkySlices + 1;
  for (uint32_t stack = 0; stack < kSkyStacks; ++stack) {
    for (uint32_t slice = 0; slice < kSkySlices; ++slice) {
      const uint32_t a = stack * ring + slice;
      dome.indices.insert(dome.indices.end(), {a, a + 1, a + ring, a + ring, a + 1, a + ring + 1});
    }
  }
  return dome;
}

// Each face's texel colour from the direction it stands for: horizon haze to zenith blue, and a
// darker ground below the horizon.
GLuint BuildGradientCubeMap() {
  constexpr int kSize = 32;
  GLuint texture = 0;
  glCreateTextures(GL_TEXTURE_CUBE_MAP, 1, &texture);
  glTextureStorage2D(texture, 1, GL_RGBA8, kSize, kSize);
  std::vector<unsigned char> pixels(kSize * kSize * 4);
  for (int face = 0; face < 6; ++face) {
    for (int y = 0; y < kSize; ++y) {
      for (int x = 0; x < kSize; ++x) {
        const float s = (x + 0.5f) / kSize * 2.0f - 1.0f;
        const float t = (y + 0.5f) / kSize * 2.0f - 1.0f;
        // Cube-map face orientation: +X, -X, +Y, -Y, +Z, -Z with t pointing down.
        const glm::vec3 directions[6] = {{1, -t, -s}, {-1, -t, s}, {s, 1, t},
                                         {s, -1, -t}, {s, -t, 1},  {-s, -t, -1}};
        const glm::vec3 d =
            directions[face] / std::sqrt(glm::dot(directions[face], directions[face]));
        const float up = d.y;
        glm::vec3 color =
            up >= 0.0f ? glm::mix(glm::vec3(0.78f, 0.84f, 0.92f), glm::vec3(0.25f, 0.45f, 0.85f),
                                  std::sqrt(up))
                       : glm::mix(glm::vec3(0.55f, 0.55f, 0.6f), glm::vec3(0.3f, 0.3f, 0.33f), -up);
        unsigned char* p = &pixels[static_cast<size_t>((y * kSize + x) * 4)];
        for (int c = 0; c < 3; ++c) p[c] = static_cast<unsigned char>(color[c] * 255.0f + 0.5f);
        p[3] = 255;
      }
    }
    glTextureSubImage3D(texture, 0, 0, 0, face, kSize, kSize, 1, GL_RGBA, GL_UNSIGNED_BYTE,
                        pixels.data());
  }
  glTextureParameteri(texture, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTextureParameteri(texture, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  return texture;
}

}  // namespace

SkyDome::SkyDome(RenderDevice& device) : device_(device) {
  const DomeGeometry dome = BuildDome();
  vertices_ = GpuBuffer(dome.positions.data(), dome.positions.size() * sizeof(glm::vec3));
  indices_ = GpuBuffer(dome.indices.data(), dome.indices.size() * sizeof(uint32_t));
  indexCount_ = static_cast<uint32_t>(dome.indices.size());
  cubeMap_ = BuildGradientCubeMap();
}

SkyDome::~SkyDome() { glDeleteTextures(1, &cubeMap_); }

void SkyDome::Draw(const glm::vec3& eye, const glm::mat4& viewProj, float angleDegrees) {
  SkyEffect* sky = device_.Effects().sky.get();
  if (sky == nullptr || !sky->IsLoaded()) return;
  InputAssembler& assembler = device_.Assembler();
  const LayoutKind previous = assembler.CurrentInputLayout();
  assembler.SetInputLayout(LayoutKind::kPos);
  assembler.BindVertexBuffer(0, vertices_, sizeof(glm::vec3));
  assembler.BindIndexBuffer(indices_);
  const glm::mat4 world = glm::rotate(glm::translate(glm::mat4(1.0f), eye),
                                      glm::radians(angleDegrees), glm::vec3(0.0f, 1.0f, 0.0f));
  sky->SetMatrix(sky->Var(SkyVar::gWorldViewProj), viewProj * world);
  sky->SetTexture(sky->Var(SkyVar::gCubeMap), cubeMap_);
  assembler.SetTopology(Topology::kTriangleList);
  const TechniqueHandle technique = sky->Tech(SkyTech::SkyTech);
  for (uint32_t pass = 0; pass < sky->PassCount(technique); ++pass) {
    sky->ApplyPass(technique, pass);
    assembler.DrawIndexed(indexCount_, 0, 0);
  }
  ResetRenderStates();
  assembler.SetInputLayout(previous);
}

}  // namespace grindle::gfx
