#include "Core/Database.h"
#include "Core/UnitTests/CoreUnitTestDrivers.h"

namespace grindle {
namespace {

// An entry knows its own kind: its type code, its size and a typed read that refuses other kinds.
bool meta_int_test() {
  Database db;
  db.Add<int>("UnitTestMetaInt", 42);
  const MetaDatabaseEntry* entry = db.FindEntry("UnitTestMetaInt");
  return entry != nullptr && entry->TypeCode() == kTypeInt &&
         db.GetEntryType("UnitTestMetaInt") == kTypeInt &&
         entry->GetSize() == sizeof(DatabaseEntry<int>) &&
         *static_cast<const int*>(entry->Value()) == 42 && entry->Name() == "UnitTestMetaInt" &&
         !db.Find<double>("UnitTestMetaInt");
}

}  // namespace

ReflectionUnitTestDriver::ReflectionUnitTestDriver() { AddTest("meta_int_test", meta_int_test); }

}  // namespace grindle
