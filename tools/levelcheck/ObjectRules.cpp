#include "ObjectRules.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <string_view>

#include "Core/DatabaseNumbers.h"
#include "Core/KeyInterning.h"
#include "Core/WellKnownKeys.h"

namespace grindle::levelcheck {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 5> kPrimitives = {"Grid.mesh", "Box.mesh", "Sphere.mesh",
                                                         "CubeMap.mesh", "Cylinder.mesh"};

// Well-known keys and the element types the systems read them as.
const std::map<std::string, std::set<XmlType>, std::less<>>& KeyTypes() {
  static const std::map<std::string, std::set<XmlType>, std::less<>> table = [] {
    std::map<std::string, std::set<XmlType>, std::less<>> t;
    for (const char* key :
         {"PositionX", "PositionY", "PositionZ", "RotationX", "RotationY", "RotationZ", "viewX",
          "viewY", "viewZ", "DirectionX", "DirectionY", "DirectionZ", "IsText", "IsBillboarded",
          "ScreenPositionX", "ScreenPositionY", "PixelScale", "Width"}) {
      t[key] = {XML_DOUBLE};
    }
    // The mesh flags are read as any number.
    for (const char* key : {"HasTexture", "HasNormalMap", "HasSpecularMap"}) {
      t[key] = {XML_DOUBLE, XML_INT, XML_FLOAT};
    }
    for (const char* key : {"Filename", "FileName", "TextureName", "NormalMapName",
                            "SpecularMapName", "Font", "Message", "ImageFileName"}) {
      t[key] = {XML_STRING};
    }
    t["Rotation"] = {XML_XMMATRIX4};
    t["Scale"] = {XML_VEC4, XML_XMFLOAT4};
    t["Color"] = {XML_VEC4, XML_XMFLOAT4};
    return t;
  }();
  return table;
}

const char* TypeName(XmlType type) {
  static const char* const names[] = {"int",      "float",     "double",      "string",   "vec4",
                                      "xmfloat4", "xmmatrix4", "std::vector", "Database", "char"};
  return type <= XML_CHAR ? names[type] : "unknown";
}

bool IsScriptComponent(std::string_view name) {
  if (!name.starts_with("Script")) return false;
  const std::string_view number = name.substr(6);
  if (number.empty()) return true;
  if (number.size() > 2 || number.front() == '0') return false;
  int value = 0;
  for (char c : number) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
  }
  return value >= 1 && value <= 80;
}

struct Component {
  const ObjectContext& context;
  const Database& db;
  std::string where;  // "object "Crate": Mesh"
  uint32_t line;      // the component's own element

  const std::string* Text(const char* key) const { return db.Find<std::string>(key).Get(); }
  bool Has(const char* key) const { return db.FindEntry(key) != nullptr; }
  bool Flag(const char* key) const { return ReadNumber(db, HashValue(key), 0.0) != 0.0; }
  uint32_t LineOf(const char* key) const { return Has(key) ? context.file.LineOf(&db, key) : line; }
  void Report(Findings& out, uint32_t at, const std::string& message) const {
    out.Add(context.file.path, at, where + ": " + message);
  }
  // A file the component names by `key` must exist under `folder`.
  void RequireFile(Findings& out, const char* key, const std::string& folder,
                   const std::string& suffix = "") const {
    const std::string* name = Text(key);
    if (name == nullptr) {
      Report(out, line, std::string("no ") + key);
    } else if (!fs::is_regular_file(folder + *name + suffix)) {
      Report(out, LineOf(key),
             key + std::string(" \"") + *name + "\" not found: no file " + folder + *name + suffix);
    }
  }
};

void CheckKeyTypes(const Component& component, Findings& out) {
  ForEachLiveEntry(component.db, [&](const std::string& key, const MetaDatabaseEntry&) {
    const auto expected = KeyTypes().find(key);
    if (expected == KeyTypes().end()) return;
    const XmlType type = component.context.file.TypeOf(&component.db, key);
    if (type == ERROR_TYPE || expected->second.contains(type)) return;
    std::string kinds;
    for (const XmlType kind : expected->second) {
      kinds += (kinds.empty() ? "" : kind == *expected->second.rbegin() ? " or " : ", ");
      kinds += TypeName(kind);
    }
    component.Report(out, component.LineOf(key.c_str()),
                     key + " is written as " + TypeName(type) + "; the engine reads " + kinds);
  });
}

void CheckMesh(ObjectContext& context, const Component& mesh, Findings& out) {
  if (context.firstMeshLine == 0) context.firstMeshLine = mesh.line;
  if (!context.hasMeshList) {
    mesh.Report(out, mesh.line,
                "the level has no ComponentLists.Meshes database (the engine stops: \"Um hello? "
                "component list much?\")");
  }
  if (const std::string* file = mesh.Text("Filename")) {
    if (std::find(kPrimitives.begin(), kPrimitives.end(), *file) == kPrimitives.end()) {
      mesh.Report(out, mesh.LineOf("Filename"),
                  "unknown primitive \"" + *file +
                      "\" (Grid.mesh, Box.mesh, Sphere.mesh, CubeMap.mesh or Cylinder.mesh; a "
                      "model file goes in a ModelStatic or ModelSkinned component)");
    }
  } else {
    mesh.Report(out, mesh.line,
                "no Filename (the engine stops: \"All meshes must contain a "
                "database entry called 'Filename'\")");
  }
  if (!mesh.Has("HasTexture")) {
    mesh.Report(out, mesh.line, "no HasTexture (the engine stops when it draws the object)");
  } else if (mesh.Flag("HasTexture")) {
    mesh.RequireFile(out, "TextureName", "Assets/Textures/");
    if (mesh.Flag("HasNormalMap")) mesh.RequireFile(out, "NormalMapName", "Assets/Textures/");
    if (mesh.Flag("HasSpecularMap")) mesh.RequireFile(out, "SpecularMapName", "Assets/Textures/");
  }
}

void CheckScript(ObjectContext& context, const Component& script, Findings& out) {
  const std::string* file = script.Text("FileName");
  if (file == nullptr) {
    script.Report(out, script.line, "no FileName (the script is not loaded)");
    return;
  }
  const std::string path = "Scripts/" + *file;
  const ScriptFacts& facts = ScriptAt(context.scripts, path);
  if (!facts.exists) {
    script.Report(out, script.LineOf("FileName"),
                  "script \"" + *file + "\" not found: no file " + path +
                      " (the engine stops when it calls \"Start\")");
  }
}

void CheckSprite(const Component& sprite, Findings& out) {
  if (sprite.Flag("IsText")) {
    sprite.RequireFile(out, "Font", "Assets/Fonts/", ".fnt");
  } else {
    sprite.RequireFile(out, "ImageFileName", "Assets/Sprites/");
  }
}

}  // namespace

const ScriptFacts& ScriptAt(std::map<std::string, ScriptFacts>& scripts, const std::string& path) {
  auto found = scripts.find(path);
  if (found == scripts.end()) found = scripts.emplace(path, ReadScript(path)).first;
  return found->second;
}

void CheckObject(ObjectContext& context, const std::string& name, const Database& object,
                 uint32_t line, Findings& out) {
  const Component whole{context, object, "object \"" + name + "\"", line};
  CheckKeyTypes(whole, out);
  ForEachLiveEntry(object, [&](const std::string& key, const MetaDatabaseEntry& entry) {
    if (entry.TypeCode() != kTypeDatabase) return;
    const Component component{context, *static_cast<const Database*>(entry.Value()),
                              whole.where + ": " + key, context.file.LineOf(&object, key)};
    CheckKeyTypes(component, out);
    if (key == "Mesh") CheckMesh(context, component, out);
    if (IsScriptComponent(key)) CheckScript(context, component, out);
    if (key == "SpriteWorld" || key == "SpriteHUD") CheckSprite(component, out);
    // A model file that cannot be opened stops the game ("File failed to open").
    if (key == "ModelStatic") component.RequireFile(out, "Name", "Assets/Models/Static/", ".mdl");
    if (key == "ModelSkinned")
      component.RequireFile(out, "Name", "Assets/Models/Skinned/", ".smdl");
  });
}

}  // namespace grindle::levelcheck
