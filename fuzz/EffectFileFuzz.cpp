// The effect file reader on arbitrary text, with includes that resolve to a fixed small file.
#include <string>

#include "Graphics/Effects/EffectFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  grindle::gfx::EffectSource source;
  std::string error;
  const grindle::gfx::IncludeReader include = [](std::string_view, std::string& included) {
    included = "uniform vec4 gIncluded;\n";
    return true;
  };
  if (grindle::gfx::ParseEffectSource("fuzz.fx", text, source, error, include)) {
    for (const auto& technique : source.techniques) {
      for (const auto& pass : technique.passes) {
        for (const auto& stage : source.stages) grindle::gfx::AssembleStage(source, pass, stage);
      }
    }
  }
  return 0;
}
