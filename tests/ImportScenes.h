// Source scenes for the import tool's tests, written by our own code: an OBJ cube with its MTL
// (colour and a diffuse map name) and a glTF 2.0 bar with a two-bone skin and two animations.
// Header-only; shared by the tool's round trip and the renderer's drawing of what it imports.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace grindle {

inline const char* const kCubeObj = R"(mtllib cube.mtl
v -0.5 -0.5 -0.5
v 0.5 -0.5 -0.5
v 0.5 0.5 -0.5
v -0.5 0.5 -0.5
v -0.5 -0.5 0.5
v 0.5 -0.5 0.5
v 0.5 0.5 0.5
v -0.5 0.5 0.5
vt 0 0
vt 1 0
vt 1 1
vt 0 1
vn 0 0 -1
vn 0 0 1
vn -1 0 0
vn 1 0 0
vn 0 -1 0
vn 0 1 0
usemtl Painted
f 1/1/1 4/4/1 3/3/1 2/2/1
f 5/1/2 6/2/2 7/3/2 8/4/2
f 1/1/3 5/2/3 8/3/3 4/4/3
f 2/1/4 3/4/4 7/3/4 6/2/4
f 1/1/5 2/2/5 6/3/5 5/4/5
f 4/1/6 8/4/6 7/3/6 3/2/6
)";

inline const char* const kCubeMtl = R"(newmtl Painted
Ka 0.1 0.1 0.1
Kd 0.8 0.25 0.1
Ks 0.5 0.5 0.5
Ns 32
map_Kd textures/Crate.png
)";

inline std::string Base64(const std::vector<unsigned char>& bytes) {
  static const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const uint32_t n = (uint32_t{bytes[i]} << 16) |
                       (i + 1 < bytes.size() ? uint32_t{bytes[i + 1]} << 8 : 0u) |
                       (i + 2 < bytes.size() ? uint32_t{bytes[i + 2]} : 0u);
    out += alphabet[(n >> 18) & 63];
    out += alphabet[(n >> 12) & 63];
    out += i + 1 < bytes.size() ? alphabet[(n >> 6) & 63] : '=';
    out += i + 2 < bytes.size() ? alphabet[n & 63] : '=';
  }
  return out;
}

// A bar 2 high standing on the origin: the bottom ring follows bone Root, the top ring bone Upper
// (pivot at y = 1), the middle ring both at 0.3 each (which the tool must renormalise). "Bend"
// turns Upper 90 degrees about z over one second, "Wave" tilts it about x and back.
inline std::string BarGltf() {
  std::vector<unsigned char> buffer;
  const auto put = [&](const void* data, size_t bytes) {
    const auto* p = static_cast<const unsigned char*>(data);
    buffer.insert(buffer.end(), p, p + bytes);
  };
  const float ring[4][2] = {{-0.3f, -0.3f}, {0.3f, -0.3f}, {0.3f, 0.3f}, {-0.3f, 0.3f}};
  for (int y = 0; y < 3; ++y) {
    for (const auto& xz : ring) {
      const float p[3] = {xz[0], static_cast<float>(y), xz[1]};
      put(p, sizeof(p));
    }
  }
  for (int y = 0; y < 3; ++y) {
    for (const auto& xz : ring) {
      const float n[3] = {xz[0] / 0.4242641f, 0.0f, xz[1] / 0.4242641f};
      put(n, sizeof(n));
    }
  }
  for (int y = 0; y < 3; ++y) {
    for (int v = 0; v < 4; ++v) {
      const unsigned char joints[4] = {static_cast<unsigned char>(y == 2 ? 1 : 0), 1, 0, 0};
      put(joints, sizeof(joints));
    }
  }
  for (int y = 0; y < 3; ++y) {
    for (int v = 0; v < 4; ++v) {
      const float w[4] = {y == 1 ? 0.3f : 1.0f, y == 1 ? 0.3f : 0.0f, 0, 0};
      put(w, sizeof(w));
    }
  }
  std::vector<uint16_t> indices;
  for (int seg = 0; seg < 2; ++seg) {
    for (int k = 0; k < 4; ++k) {
      const uint16_t a = static_cast<uint16_t>(seg * 4 + k), b = static_cast<uint16_t>(seg * 4 + (k + 1) % 4);
      const uint16_t c = static_cast<uint16_t>(b + 4), d = static_cast<uint16_t>(a + 4);
      indices.insert(indices.end(), {a, c, b, a, d, c});
    }
  }
  indices.insert(indices.end(), {8, 11, 10, 8, 10, 9, 0, 1, 2, 0, 2, 3});
  put(indices.data(), indices.size() * 2);
  const float ibm[32] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1,
                         1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -1, 0, 1};
  put(ibm, sizeof(ibm));
  const float bendTimes[2] = {0, 1}, bend[8] = {0, 0, 0, 1, 0, 0, 0.7071068f, 0.7071068f};
  put(bendTimes, sizeof(bendTimes));
  put(bend, sizeof(bend));
  const float waveTimes[3] = {0, 0.5f, 1}, wave[12] = {0, 0, 0, 1, 0.3826834f, 0, 0, 0.9238795f, 0, 0, 0, 1};
  put(waveTimes, sizeof(waveTimes));
  put(wave, sizeof(wave));
  EXPECT_EQ(buffer.size(), 876u);
  return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0,2]}],
"nodes":[{"name":"Root","children":[1]},{"name":"Upper","translation":[0,1,0]},
{"name":"Bar","mesh":0,"skin":0}],
"skins":[{"joints":[0,1],"inverseBindMatrices":5}],
"meshes":[{"name":"Bar","primitives":[{"attributes":{"POSITION":0,"NORMAL":1,"JOINTS_0":2,
"WEIGHTS_0":3},"indices":4}]}],
"animations":[{"name":"Bend","channels":[{"sampler":0,"target":{"node":1,"path":"rotation"}}],
"samplers":[{"input":6,"output":7}]},
{"name":"Wave","channels":[{"sampler":0,"target":{"node":1,"path":"rotation"}}],
"samplers":[{"input":8,"output":9}]}],
"buffers":[{"byteLength":876,"uri":"data:application/octet-stream;base64,)" +
         Base64(buffer) + R"("}],
"bufferViews":[{"buffer":0,"byteOffset":0,"byteLength":144},{"buffer":0,"byteOffset":144,"byteLength":144},
{"buffer":0,"byteOffset":288,"byteLength":48},{"buffer":0,"byteOffset":336,"byteLength":192},
{"buffer":0,"byteOffset":528,"byteLength":120},{"buffer":0,"byteOffset":648,"byteLength":128},
{"buffer":0,"byteOffset":776,"byteLength":8},{"buffer":0,"byteOffset":784,"byteLength":32},
{"buffer":0,"byteOffset":816,"byteLength":12},{"buffer":0,"byteOffset":828,"byteLength":48}],
"accessors":[
{"bufferView":0,"componentType":5126,"count":12,"type":"VEC3","min":[-0.3,0,-0.3],"max":[0.3,2,0.3]},
{"bufferView":1,"componentType":5126,"count":12,"type":"VEC3"},
{"bufferView":2,"componentType":5121,"count":12,"type":"VEC4"},
{"bufferView":3,"componentType":5126,"count":12,"type":"VEC4"},
{"bufferView":4,"componentType":5123,"count":60,"type":"SCALAR"},
{"bufferView":5,"componentType":5126,"count":2,"type":"MAT4"},
{"bufferView":6,"componentType":5126,"count":2,"type":"SCALAR","min":[0],"max":[1]},
{"bufferView":7,"componentType":5126,"count":2,"type":"VEC4"},
{"bufferView":8,"componentType":5126,"count":3,"type":"SCALAR","min":[0],"max":[1]},
{"bufferView":9,"componentType":5126,"count":3,"type":"VEC4"}]})";
}

}  // namespace grindle
