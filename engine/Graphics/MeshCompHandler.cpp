#include "Graphics/MeshCompHandler.h"

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/WellKnownKeys.h"

namespace grindle::gfx {
namespace {

DataHandle<Database> MeshListOf(const Database& level) {
  const auto lists = level.Find<Database>(KeyOf(WellKnown::ComponentLists));
  return lists ? lists->Find<Database>(KeyOf(WellKnown::Meshes)) : DataHandle<Database>();
}

}  // namespace

std::unique_ptr<MeshPass> CreateMeshPass(Database& root, RenderDevice& device) {
  return std::make_unique<MeshCompHandler>(root, device);
}

DataHandle<Database> MeshCompHandler::FindCurrentLevel() const {
  const auto name = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const auto levels = root_.Find<Database>(KeyOf(WellKnown::Levels));
  if (!name || !levels) return {};
  return levels->Find<Database>(*name);
}

MeshCompHandler::LevelMeshes MeshCompHandler::FindLevelMeshes(const Database& level) const {
  const auto gameObjects = level.Find<Database>(KeyOf(WellKnown::GameObjects));
  const DataHandle<Database> list = MeshListOf(level);
  if (!list || !gameObjects) return {};
  return {list.Get(), gameObjects.Get()};
}

MeshCompHandler::LevelMeshes MeshCompHandler::FindCurrentLevelMeshes() const {
  const DataHandle<Database> level = FindCurrentLevel();
  return level ? FindLevelMeshes(*level) : LevelMeshes();
}

void MeshCompHandler::AddObject(DataHandle<Database> object, std::string_view objectName) {
  if (!object->Find<Database>(KeyOf(WellKnown::Mesh))) return;
  const DataHandle<Database> dhCurLevel = FindCurrentLevel();
  const DataHandle<Database> dhdCurrMeshList =
      dhCurLevel ? MeshListOf(*dhCurLevel) : DataHandle<Database>();
  GRINDLE_ASSERT(!dhdCurrMeshList.IsValid(), "Um hello? component list much?");
  Register(*object, objectName, *dhdCurrMeshList);
}

void MeshCompHandler::Register(Database& object, std::string_view objectName, Database& list) {
  const DataHandle<Database> mesh = object.Find<Database>(KeyOf(WellKnown::Mesh));
  if (!mesh) return;
  // Registering an object again refers its entry to the new component instead of adding a second
  // record under the same name.
  if (const auto listed = list.Find<DataHandle<Database>>(objectName)) {
    *listed = mesh;
  } else {
    list.Add<DataHandle<Database>>(objectName, mesh);
  }
  listed_.Invalidate();

  const DataHandle<std::string> dhFileName = mesh->Find<std::string>(KeyOf(WellKnown::Filename));
  GRINDLE_ASSERT(!dhFileName.IsValid(),
                 "All meshes must contain a database entry called 'Filename'");
  const auto meshIndex = static_cast<int>(store_.FindOrBuild(*dhFileName));
  if (const auto written = mesh->Find<int>(KeyOf(WellKnown::MeshIndex))) {
    *written = meshIndex;
  } else {
    mesh->Add<int>("MeshIndex", meshIndex);
  }
}

void MeshCompHandler::RemoveObject(std::string_view objectName) {
  const DataHandle<Database> level = FindCurrentLevel();
  const DataHandle<Database> list = level ? MeshListOf(*level) : DataHandle<Database>();
  if (!list) return;
  list->Remove(objectName);
  listed_.Invalidate();
}

void MeshCompHandler::BuildLevelLists(Database& level) {
  DataHandle<Database> lists = level.Find<Database>(KeyOf(WellKnown::ComponentLists));
  if (!lists) lists = level.Add<Database>("ComponentLists");
  DataHandle<Database> list = lists->Find<Database>(KeyOf(WellKnown::Meshes));
  if (!list) list = lists->Add<Database>("Meshes");
  listed_.Invalidate();

  const auto gameObjects = level.Find<Database>(KeyOf(WellKnown::GameObjects));
  if (!gameObjects) return;
  for (const Database::Record& record : gameObjects->Records()) {
    const uint32_t key = HashValue(record.name);
    const auto object = gameObjects->Find<Database>(key);
    if (!object || gameObjects->FindEntry(key) != record.entry) continue;
    if (list->FindEntry(key) == nullptr) Register(*object, record.name, *list);
  }
}

}  // namespace grindle::gfx
