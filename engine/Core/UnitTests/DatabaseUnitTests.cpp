#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/UnitTests/CoreUnitTestDrivers.h"

namespace grindle {
namespace {

struct UDT {
  int udpData1 = 1234;
  float udpData2 = 0.5f;
};

constexpr const char* kPodName = "UnitTestInt";
constexpr const char* kUdtName = "UnitTestUDT";

bool database_add_default_pod() {
  Database db;
  DataHandle<int> added = db.Add<int>(kPodName);
  GRINDLE_ASSERT(!added, "Database failed to construct int");
  return *added == 0 && db.Find<int>(kPodName).Get() == added.Get();
}

// A second Add under the same name replaces the entry; the listing keeps both names.
template <class T>
bool AddTwiceReplaces() {
  Database db;
  db.Add<T>(kPodName);
  DataHandle<T> second = db.Add<T>(kPodName);
  return second && db.Find<T>(kPodName).Get() == second.Get() && db.EntryCount() == 1 &&
         db.Records().size() == 2;
}

bool database_add_default_pod_twice() { return AddTwiceReplaces<int>(); }

bool database_add_default_udt() {
  Database db;
  DataHandle<UDT> added = db.Add<UDT>(kUdtName);
  GRINDLE_ASSERT(!added, "Database failed to construct int");
  GRINDLE_ASSERT(added->udpData1 != 1234, "User Defined Type udpData1 int not initialized properly");
  return added->udpData2 == 0.5f && db.Find<UDT>(kUdtName).Get() == added.Get();
}

bool database_add_default_udt_twice() {
  if (!AddTwiceReplaces<UDT>()) return false;
  Database db;
  db.Add<UDT>(kUdtName)->udpData1 = 5;
  return db.Add<UDT>(kUdtName)->udpData1 == 1234;  // the replacement starts from its default
}

bool database_add_copy_pod() {
  Database db;
  int source = 77;
  DataHandle<int> added = db.Add<int>(kPodName, source);
  GRINDLE_ASSERT(!added, "Database failed to construct int copy");
  source = 0;
  return *added == 77 && added.Get() != &source;
}

bool database_add_copy_udt() {
  Database db;
  UDT source;
  source.udpData1 = -9;
  source.udpData2 = 3.25f;
  DataHandle<UDT> added = db.Add<UDT>(kUdtName, source);
  GRINDLE_ASSERT(!added, "Database failed to construct int copy");
  source.udpData1 = 0;
  return added->udpData1 == -9 && added->udpData2 == 3.25f;
}

template <class T>
bool AddThenRemove(const char* name) {
  Database db;
  if (!db.Add<T>(name)) return false;
  db.Remove(name);
  return !db.Find<T>(name) && db.FindEntry(name) == nullptr && db.EntryCount() == 0 &&
         db.Records().empty();
}

bool database_add_remove_pod() { return AddThenRemove<int>(kPodName); }
bool database_add_remove_udt() { return AddThenRemove<UDT>(kUdtName); }

}  // namespace

DatabaseUnitTestDriver::DatabaseUnitTestDriver() {
  AddTest("database_add_default_pod", database_add_default_pod);
  AddTest("database_add_default_pod_twice", database_add_default_pod_twice);
  AddTest("database_add_default_udt", database_add_default_udt);
  AddTest("database_add_default_udt_twice", database_add_default_udt_twice);
  AddTest("database_add_copy_pod", database_add_copy_pod);
  AddTest("database_add_copy_udt", database_add_copy_udt);
  AddTest("database_add_remove_pod", database_add_remove_pod);
  AddTest("database_add_remove_udt", database_add_remove_udt);
}

}  // namespace grindle
