// Our effect file format, parsed into its parts without touching GL (so it is testable on its own).
// Any thread; pure functions. A file is GLSL 450 split into sections by lines that begin with '@':
//   @common                 code every stage of every pass starts with (structs, uniforms, helpers)
//   @vertex NAME / @geometry NAME / @fragment NAME   one stage function body file each
//   @technique NAME         followed by ordered lines: pass NAME vertex=V fragment=F
//                           [geometry=G] [define=A,B] [raster=N] [blend=N] [depth=N]
//   @include FILE           the lines of FILE (beside the effect file) in place of this line
// Lines outside GLSL sections that are blank or start with "//" are ignored.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace grindle::gfx {

enum class StageKind : uint32_t { kVertex, kGeometry, kFragment };

struct StageSource {
  StageKind kind = StageKind::kVertex;
  std::string name;
  std::string code;  // carries #line directives naming file index and line
};

struct PassSource {
  std::string name;
  std::string vertex, geometry, fragment;  // stage names; geometry may be empty
  std::vector<std::string> defines;
  int32_t rasterizer = -1, blend = -1, depthStencil = -1;
};

struct TechniqueSource {
  std::string name;
  std::vector<PassSource> passes;
};

struct EffectSource {
  std::vector<std::string> files;  // the effect file first, then included files
  std::string common;
  std::vector<StageSource> stages;
  std::vector<TechniqueSource> techniques;

  const StageSource* FindStage(StageKind kind, std::string_view name) const;
};

// Reads an included file's text by name; false when it cannot.
using IncludeReader = std::function<bool(std::string_view name, std::string& text)>;

// Parses `text` (the contents of `fileName`). On a malformed line returns false and sets `error` to
// "FILE:LINE: what was expected".
bool ParseEffectSource(std::string_view fileName, std::string_view text, EffectSource& out,
                       std::string& error, const IncludeReader& readInclude);

// The complete GLSL of one stage of one pass: version line, stage and pass defines, the common
// code and the stage code, whose #line directives make compiler messages carry file lines.
std::string AssembleStage(const EffectSource& source, const PassSource& pass,
                          const StageSource& stage);

// Rewrites a GLSL compiler log so that each "N:LINE(COL)" location (N a file index) reads
// "FILE:LINE(COL)".
std::string NameFilesInLog(const std::vector<std::string>& files, std::string_view log);

}  // namespace grindle::gfx
