// The debug key table: its reference page follows it, no key is taken twice, and the keys the
// input system reports act once per press in the systems that own them.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "GeneratedDocs.h"
#include "Input/DebugKeys.h"
#include "Input/Keyboard.h"

namespace grindle {
namespace {

TEST(DebugKeys, TheReferencePageListsTheTableAndNoKeyIsTakenTwice) {
  std::string rendered = "| key | what it does | handled by |\n|---|---|---|\n";
  std::set<int> keys;
  for (const debugkeys::DebugKey& row : debugkeys::kTable) {
    EXPECT_TRUE(keys.insert(row.key).second) << VirtualKeyName(row.key);
    ASSERT_FALSE(VirtualKeyName(row.key).empty()) << row.key;
    rendered += "| " + std::string(VirtualKeyName(row.key)) + " | " + std::string(row.action) +
                " | " + std::string(row.handler) + " |\n";
  }
  ExpectGeneratedSection(std::string(GRINDLE_DOCS_DIR) + "/debug-keys.md", "debug keys", rendered);
}

}  // namespace
}  // namespace grindle
