#include "Core/LookupDiagnostics.h"

#include <cstdio>
#include <map>
#include <utility>
#include <vector>

#include "Core/Database.h"

namespace grindle {
namespace {

const Database* gLookupRoot = nullptr;

std::map<std::string, std::string>& Origins() {
  static std::map<std::string, std::string> origins;
  return origins;
}

// The dotted path of `target` below `root`, found by a walk of the tree (only ever run once, on
// the way to the assertion); empty when it is not in the tree.
bool PathOf(const Database& root, const Database* target, std::string& path) {
  std::vector<std::pair<const Database*, std::string>> pending = {{&root, ""}};
  while (!pending.empty()) {
    auto [database, prefix] = std::move(pending.back());
    pending.pop_back();
    if (database == target) {
      path = prefix;
      return true;
    }
    for (const Database::Record& record : database->Records()) {
      const MetaDatabaseEntry* entry = database->FindEntry(record.name);
      if (entry != record.entry || entry->TypeCode() != kTypeDatabase) continue;
      pending.emplace_back(static_cast<const Database*>(entry->Value()),
                           prefix.empty() ? record.name : prefix + "." + record.name);
    }
  }
  return false;
}

}  // namespace

void SetLookupRoot(const Database* root) { gLookupRoot = root; }

void NoteLookupOrigin(const std::string& pathPrefix, const std::string& file) {
  Origins()[pathPrefix] = file;
}

void ReportLastMissedLookup() {
  const MissedLookup miss = gLastMissedLookup;
  if (miss.database == nullptr) return;
  const std::string& key = ProcessKeys().NameOf(miss.key);
  std::string path;
  // The database may be gone by now: it is only looked at once found in the live tree.
  if (gLookupRoot == nullptr || !PathOf(*gLookupRoot, miss.database, path)) {
    path = "(a database outside the tree)";
  }
  const std::string full = path.empty() ? key : path + "." + key;
  std::fprintf(stderr, "Missing database entry: %s (the last lookup that found nothing)",
               full.c_str());
  // The longest noted prefix that the path lies under names the file.
  const std::string* file = nullptr;
  size_t longest = 0;
  for (const auto& [prefix, origin] : Origins()) {
    const bool under =
        full.starts_with(prefix) && (full.size() == prefix.size() || full[prefix.size()] == '.');
    if (under && prefix.size() > longest) {
      longest = prefix.size();
      file = &origin;
    }
  }
  if (file != nullptr) std::fprintf(stderr, ", expected in %s", file->c_str());
  std::fprintf(stderr, "\n");
  std::fflush(stderr);
}

}  // namespace grindle
