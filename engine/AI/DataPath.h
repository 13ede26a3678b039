// Dotted database paths as scripts and the AI system write them ("A.B.C.Key"): walking the nested
// databases from the root, with the special components "*CurrentLevel" and "*CurrentObject" and
// the key "*Name". Main thread only; a path that does not resolve yields a null handle, never a
// new entry.
#pragma once

#include <string_view>

#include "Core/DataHandle.h"

namespace grindle {

class Database;

// The database a dotted path names, or null. "*CurrentLevel" stands for Levels.<CurrentLevel>;
// "*CurrentObject" for `currentObjectPath` (itself a plain dotted path; empty: unresolved).
DataHandle<Database> ResolveDatabase(Database& root, std::string_view path,
                                     std::string_view currentObjectPath = {});

// A path split at its last '.': the database part resolved, and the key after it.
struct EntryPath {
  DataHandle<Database> database;
  std::string_view key;
};
EntryPath ResolveEntryPath(Database& root, std::string_view path,
                           std::string_view currentObjectPath = {});

// Levels.<level>.ComponentLists.Scripts, or null.
DataHandle<Database> ScriptRegistry(Database& root, std::string_view level);

}  // namespace grindle
