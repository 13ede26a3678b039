#include "Graphics/Effects/EffectFile.h"

#include <charconv>
#include <sstream>

namespace grindle::gfx {
namespace {

constexpr int kMaxIncludeDepth = 8;

std::string_view Trim(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t' || text.front() == '\r')) {
    text.remove_prefix(1);
  }
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t' || text.back() == '\r')) {
    text.remove_suffix(1);
  }
  return text;
}

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    const size_t start = i;
    while (i < text.size() && text[i] != ' ' && text[i] != '\t') ++i;
    if (i > start) words.push_back(text.substr(start, i - start));
  }
  return words;
}

std::vector<std::string> SplitCommas(std::string_view text) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (start <= text.size()) {
    size_t comma = text.find(',', start);
    if (comma == std::string_view::npos) comma = text.size();
    if (comma > start) parts.emplace_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  return parts;
}

// Where a line came from: file index into EffectSource::files and 1-based line.
struct Origin {
  uint32_t file;
  uint32_t line;
};

class Parser {
 public:
  Parser(EffectSource& out, std::string& error, const IncludeReader& readInclude)
      : out_(out), error_(error), readInclude_(readInclude) {}

  bool Text(uint32_t file, std::string_view text, int depth) {
    uint32_t lineNumber = 0;
    size_t start = 0;
    while (start < text.size()) {
      size_t end = text.find('\n', start);
      if (end == std::string_view::npos) end = text.size();
      if (!Line({file, ++lineNumber}, text.substr(start, end - start), depth)) return false;
      start = end + 1;
    }
    return true;
  }

  bool Finish() {
    for (const TechniqueSource& technique : out_.techniques) {
      if (technique.passes.empty()) {
        error_ = out_.files[0] + ": technique '" + technique.name + "' has no pass";
        return false;
      }
    }
    return true;
  }

 private:
  enum class Section { kNone, kCommon, kStage, kTechnique };

  bool Fail(Origin at, std::string_view what) {
    std::ostringstream text;
    text << out_.files[at.file] << ":" << at.line << ": " << what;
    error_ = text.str();
    return false;
  }

  bool Include(Origin at, std::string_view name, int depth) {
    if (depth >= kMaxIncludeDepth) return Fail(at, "includes nest too deeply");
    std::string text;
    if (!readInclude_ || !readInclude_(name, text)) {
      return Fail(at, "cannot read included file '" + std::string(name) + "'");
    }
    out_.files.emplace_back(name);
    return Text(static_cast<uint32_t>(out_.files.size() - 1), text, depth + 1);
  }

  bool SectionLine(Origin at, std::string_view text, int depth) {
    const auto words = Words(text.substr(1));
    if (words.empty()) return Fail(at, "expected a section name after '@'");
    const std::string_view kind = words[0];
    if (kind == "include") {
      if (words.size() != 2) return Fail(at, "expected one file name after @include");
      return Include(at, words[1], depth);
    }
    if (kind == "common") {
      if (words.size() != 1) return Fail(at, "expected nothing after @common");
      section_ = Section::kCommon;
      code_ = &out_.common;
      return true;
    }
    if (words.size() != 2) return Fail(at, "expected one name after @" + std::string(kind));
    if (kind == "technique") {
      section_ = Section::kTechnique;
      out_.techniques.push_back({std::string(words[1]), {}});
      return true;
    }
    StageKind stage;
    if (kind == "vertex")
      stage = StageKind::kVertex;
    else if (kind == "geometry")
      stage = StageKind::kGeometry;
    else if (kind == "fragment")
      stage = StageKind::kFragment;
    else
      return Fail(at, "expected @common, @vertex, @geometry, @fragment, @technique or @include");
    if (out_.FindStage(stage, words[1]) != nullptr) {
      return Fail(at, "stage '" + std::string(words[1]) + "' defined twice");
    }
    section_ = Section::kStage;
    out_.stages.push_back({stage, std::string(words[1]), {}});
    code_ = &out_.stages.back().code;
    return true;
  }

  bool StateValue(Origin at, std::string_view key, std::string_view value, int32_t& target) {
    int32_t number = 0;
    auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), number);
    if (ec != std::errc() || end != value.data() + value.size() || number < 0) {
      return Fail(at, "expected a state index after " + std::string(key) + "=");
    }
    target = number;
    return true;
  }

  bool PassLine(Origin at, std::string_view text) {
    const auto words = Words(text);
    if (words.size() < 2 || words[0] != "pass")
      return Fail(at, "expected 'pass NAME key=value...'");
    PassSource pass;
    pass.name = words[1];
    for (size_t i = 2; i < words.size(); ++i) {
      const size_t equals = words[i].find('=');
      if (equals == std::string_view::npos) return Fail(at, "expected key=value");
      const std::string_view key = words[i].substr(0, equals);
      const std::string_view value = words[i].substr(equals + 1);
      bool ok = true;
      if (key == "vertex")
        pass.vertex = value;
      else if (key == "geometry")
        pass.geometry = value;
      else if (key == "fragment")
        pass.fragment = value;
      else if (key == "define")
        pass.defines = SplitCommas(value);
      else if (key == "raster")
        ok = StateValue(at, key, value, pass.rasterizer);
      else if (key == "blend")
        ok = StateValue(at, key, value, pass.blend);
      else if (key == "depth")
        ok = StateValue(at, key, value, pass.depthStencil);
      else
        return Fail(at, "unknown pass key '" + std::string(key) + "'");
      if (!ok) return false;
    }
    if (pass.vertex.empty() || pass.fragment.empty()) {
      return Fail(at, "expected vertex= and fragment= in pass '" + pass.name + "'");
    }
    if (out_.FindStage(StageKind::kVertex, pass.vertex) == nullptr)
      return Fail(at, "no @vertex " + pass.vertex);
    if (out_.FindStage(StageKind::kFragment, pass.fragment) == nullptr) {
      return Fail(at, "no @fragment " + pass.fragment);
    }
    if (!pass.geometry.empty() && out_.FindStage(StageKind::kGeometry, pass.geometry) == nullptr) {
      return Fail(at, "no @geometry " + pass.geometry);
    }
    out_.techniques.back().passes.push_back(std::move(pass));
    return true;
  }

  // Code lines keep their origin through #line directives wherever the origin jumps.
  void AppendCode(Origin at, std::string_view line) {
    std::string& code = *code_;
    if (code.empty() || lastAppended_.file != at.file || lastAppended_.line + 1 != at.line ||
        lastCode_ != code_) {
      code += "#line " + std::to_string(at.line) + " " + std::to_string(at.file) + "\n";
    }
    code.append(line);
    code.push_back('\n');
    lastAppended_ = at;
    lastCode_ = code_;
  }

  bool Line(Origin at, std::string_view raw, int depth) {
    if (!raw.empty() && raw.front() == '@') return SectionLine(at, Trim(raw), depth);
    const std::string_view text = Trim(raw);
    switch (section_) {
      case Section::kNone:
        if (text.empty() || text.starts_with("//")) return true;
        return Fail(at, "expected a section line starting with '@'");
      case Section::kCommon:
      case Section::kStage:
        AppendCode(at, raw);
        return true;
      case Section::kTechnique:
        if (text.empty() || text.starts_with("//")) return true;
        return PassLine(at, text);
    }
    return true;
  }

  EffectSource& out_;
  std::string& error_;
  const IncludeReader& readInclude_;
  Section section_ = Section::kNone;
  std::string* code_ = nullptr;
  std::string* lastCode_ = nullptr;
  Origin lastAppended_{0, 0};
};

}  // namespace

const StageSource* EffectSource::FindStage(StageKind kind, std::string_view name) const {
  for (const StageSource& stage : stages) {
    if (stage.kind == kind && stage.name == name) return &stage;
  }
  return nullptr;
}

bool ParseEffectSource(std::string_view fileName, std::string_view text, EffectSource& out,
                       std::string& error, const IncludeReader& readInclude) {
  out = EffectSource{};
  out.files.emplace_back(fileName);
  Parser parser(out, error, readInclude);
  return parser.Text(0, text, 0) && parser.Finish();
}

std::string AssembleStage(const EffectSource& source, const PassSource& pass,
                          const StageSource& stage) {
  static constexpr const char* kStageDefine[] = {"VERTEX_STAGE", "GEOMETRY_STAGE",
                                                 "FRAGMENT_STAGE"};
  std::ostringstream glsl;
  glsl << "#version 450 core\n#define " << kStageDefine[static_cast<uint32_t>(stage.kind)] << "\n";
  for (const std::string& define : pass.defines) glsl << "#define " << define << "\n";
  glsl << source.common << stage.code;
  return glsl.str();
}

std::string NameFilesInLog(const std::vector<std::string>& files, std::string_view log) {
  std::string result;
  size_t start = 0;
  while (start < log.size()) {
    size_t end = log.find('\n', start);
    if (end == std::string_view::npos) end = log.size();
    std::string_view line = log.substr(start, end - start);
    uint32_t index = 0;
    auto [number, ec] = std::from_chars(line.data(), line.data() + line.size(), index);
    if (ec == std::errc() && number < line.data() + line.size() && *number == ':' &&
        index < files.size()) {
      result += files[index];
      line.remove_prefix(static_cast<size_t>(number - line.data()));
    }
    result.append(line);
    result.push_back('\n');
    start = end + 1;
  }
  return result;
}

}  // namespace grindle::gfx
