// The game data the AI system prepares at Load and keeps current each frame: global values the
// game's scripts read (timers, the date, the frame count) and the list of level files.
#include <algorithm>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "AI/AILibraryInterface.h"
#include "Core/Database.h"
#include "Core/WellKnownKeys.h"

namespace grindle {
namespace {

DataHandle<Database> EnsureDatabase(Database& parent, std::string_view name) {
  const DataHandle<Database> found = parent.Find<Database>(name);
  return found ? found : parent.Add<Database>(name);
}

// Values the level files or archetypes already set are kept.
template <class T>
void EnsureValue(Database& database, std::string_view name, const T& value) {
  if (database.FindEntry(name) == nullptr) database.Add<T>(name, value);
}

void SetDouble(Database& database, uint32_t key, std::string_view name, double value) {
  if (const DataHandle<double> entry = database.Find<double>(key)) {
    *entry = value;
  } else {
    database.Add<double>(name, value);
  }
}

// Level names as the level manager takes them: the files of Assets/Levels without ".xml".
std::vector<std::string> LevelFiles() {
  std::vector<std::string> names;
  std::error_code error;
  for (const auto& file : std::filesystem::directory_iterator("Assets/Levels", error)) {
    if (file.path().extension() == ".xml") names.push_back(file.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

const std::string& CountdownName(size_t index) {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> table;
    for (size_t i = 0; i < kCountdownCount; ++i) table.push_back("Countdown" + std::to_string(i));
    return table;
  }();
  return names[index];
}

}  // namespace

void AIInterface::WriteStartupValues() {
  Database& root = Root();
  EnsureDatabase(root, "Menus");
  const DataHandle<Database> globals = EnsureDatabase(root, "GlobalVariables");
  EnsureValue<double>(*globals, "Count", 0.0);
  EnsureValue<double>(*globals, "MatchTimeRemaining", 0.0);
  EnsureValue<double>(*globals, "ExplosionTimeRemaining", 0.0);
  EnsureValue<std::string>(*globals, "WorldType", "NoSelectedWorld");
  for (size_t i = 0; i < kCountdownCount; ++i) EnsureValue<double>(*globals, CountdownName(i), 0.0);
  const DataHandle<Database> levelList = EnsureDatabase(root, "LevelList");
  const std::vector<std::string> levels = LevelFiles();
  EnsureValue<double>(*levelList, "Count", static_cast<double>(levels.size()));
  for (size_t i = 0; i < levels.size(); ++i)
    EnsureValue<std::string>(*levelList, "Level" + std::to_string(i), levels[i]);
  EnsureValue<double>(root, "Tobble", 0.0);
  WriteDate();
}

void AIInterface::WriteDate() {
  const DataHandle<Database> globals = Root().Find<Database>(KeyOf(WellKnown::GlobalVariables));
  if (!globals) return;
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  SetDouble(*globals, KeyOf(WellKnown::wMonth), "wMonth", local.tm_mon + 1);
  SetDouble(*globals, KeyOf(WellKnown::wDay), "wDay", local.tm_mday);
  SetDouble(*globals, KeyOf(WellKnown::wDayOfWeek), "wDayOfWeek", local.tm_wday);
  SetDouble(*globals, KeyOf(WellKnown::wHour), "wHour", local.tm_hour);
  SetDouble(*globals, KeyOf(WellKnown::wMinute), "wMinute", local.tm_min);
}

void AIInterface::RunCountdowns(double dt) {
  const DataHandle<Database> globals = Root().Find<Database>(KeyOf(WellKnown::GlobalVariables));
  for (size_t i = 0; i < kCountdownCount; ++i) {
    double& countdown = timers_.countdowns[i];
    if (countdown > 0.0) countdown -= dt;
    if (globals) SetDouble(*globals, HashValue(CountdownName(i)), CountdownName(i), countdown);
  }
}

}  // namespace grindle
