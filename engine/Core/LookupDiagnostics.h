// What the null-handle assertion can say beyond its fixed text: the last lookup that found
// nothing (a database and a key, noted by Find at the cost of two stores) and the files that
// databases were read from, so that a level missing an entry is named with the entry's full path
// and its level file on standard error. Main thread only, like the database.
#pragma once

#include <cstdint>
#include <string>

namespace grindle {

class Database;

struct MissedLookup {
  const Database* database = nullptr;
  uint32_t key = 0;
};

inline MissedLookup gLastMissedLookup;

// The tree searched for the database of the last miss, and the file behind a path prefix
// ("Levels.Arena" -> "Assets/Levels/Arena.xml"). Called by the level manager.
void SetLookupRoot(const Database* root);
void NoteLookupOrigin(const std::string& pathPrefix, const std::string& file);
// Writes what is known of the last miss to standard error; called just before the assertion.
void ReportLastMissedLookup();

}  // namespace grindle
