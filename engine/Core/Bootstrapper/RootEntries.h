// Writing a value into a database whether or not its entry exists yet, by pre-interned key so the
// frame loop's per-frame writes intern nothing. Main thread only, like the database itself.
#pragma once

#include "Core/Database.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

template <class T>
void WriteEntry(Database& database, WellKnown name, const T& value) {
  const DataHandle<T> entry = database.Find<T>(KeyOf(name));
  if (entry) {
    *entry = value;
  } else {
    database.Add<T>(kWellKnownKeyNames[static_cast<size_t>(name)], value);
  }
}

}  // namespace grindle
