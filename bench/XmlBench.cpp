// Level-file reading speed: cleaning and parsing a generated level into a fresh database. Tearing
// the database down is left out of the timing; it is the pools' cost, not the reader's.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "Core/Database.h"
#include "Core/xmlParser.h"

namespace grindle {
namespace {

// One game object as level files write them: indented, commented, components as databases.
void AppendObject(std::string& text, int index) {
  const std::string n = std::to_string(index);
  text += "    <Database name=\"Obj" + n + "\">\n";
  text += "      <!-- crate " + n + " -->\n";
  text += "      <string name=\"Archetype\">Crate</string>\n";
  text += "      <Database name=\"Transform\">\n";
  text += "        <vec4 name=\"Position\">" + n + ".5 2.25 -" + n + "</vec4>\n";
  text += "        <xmfloat4 name=\"Rotation\">0 0.7071 0 0.7071</xmfloat4>\n";
  text += "        <vec4 name=\"Scale\">1 1 1</vec4>\n";
  text += "        <xmmatrix4 name=\"World\">identity</xmmatrix4>\n";
  text += "      </Database>\n";
  text += "      <Database name=\"Mesh\">\n";
  text += "        <string name=\"MeshName\">Cube</string>\n";
  text += "        <string name=\"Texture\">Assets/Textures/crate_diffuse.png</string>\n";
  text += "        <xmfloat4 name=\"Colour\">0.8 0.6 0.4 1</xmfloat4>\n";
  text += "      </Database>\n";
  text += "      <Database name=\"Body\">\n";
  text += "        <double name=\"Mass\">12.5</double>\n";
  text += "        <float name=\"Friction\">0.6</float>\n";
  text += "        <int name=\"Group\">" + n + "</int>\n";
  text += "        <char name=\"Shape\">b</char>\n";
  text += "      </Database>\n";
  text += "    </Database>\n";
}

// Groups of 1000 objects keep the number of distinct names small whatever the file size.
std::string WriteLevel(size_t targetBytes) {
  std::string text = "<!-- generated level -->\n";
  for (int group = 0; text.size() < targetBytes; ++group) {
    text += "<Database name=\"Group" + std::to_string(group) + "\">\n";
    for (int object = 0; object < 1000 && text.size() < targetBytes; ++object) {
      AppendObject(text, object);
    }
    text += "</Database>\n";
  }
  const std::string path = (std::filesystem::temp_directory_path() /
                            ("grindle_bench_level_" + std::to_string(targetBytes) + ".xml"))
                               .string();
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

void ParseRepeatedly(benchmark::State& state, size_t targetBytes) {
  const std::string path = WriteLevel(targetBytes);
  const auto bytes = static_cast<int64_t>(std::filesystem::file_size(path));
  for (auto _ : state) {
    auto db = std::make_unique<Database>();
    ParseFile(path, *db);
    benchmark::DoNotOptimize(db->EntryCount());
    state.PauseTiming();
    db.reset();
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * bytes);
  state.counters["file_MB"] = static_cast<double>(bytes) / 1e6;
  std::filesystem::remove(path);
}

void BM_XmlParseLevel(benchmark::State& state) { ParseRepeatedly(state, 1u << 20); }
BENCHMARK(BM_XmlParseLevel)->Unit(benchmark::kMillisecond)->Iterations(10);

void BM_XmlParseTenMegabytes(benchmark::State& state) { ParseRepeatedly(state, 10u << 20); }
BENCHMARK(BM_XmlParseTenMegabytes)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
}  // namespace grindle
