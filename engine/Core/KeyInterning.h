// Interning of entry names into small integer keys. Keys are handed out in order of first use
// (7, 14, 21, ... 7000, 6, 13, ...), never released, and the whole 7001-key space is used once
// before the collision assertion stops the program. Main thread only: no lock.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace grindle {

inline constexpr int32_t MAX_STRING_NUM = 7001;
inline constexpr int32_t kFirstKey = 7;

struct StringHash {
  using is_transparent = void;
  size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

class KeyInterner {
 public:
  KeyInterner();

  uint32_t HashValue(std::string_view name);
  // The name behind a key; the empty string for a key never handed out.
  const std::string& NameOf(uint32_t key) const;
  int32_t NextOpenHash() const { return nextOpenHash; }

 private:
  std::unordered_map<std::string, uint32_t, StringHash, std::equal_to<>> forward_;
  std::vector<std::string> cReverseLookupTable_;
  int32_t nextOpenHash = kFirstKey;
};

// Statistics counters, only ever incremented, read once a second by the frame loop.
struct DatabaseCounters {
  uint32_t hashCalls = 0;
  uint32_t lookups = 0;
};

KeyInterner& ProcessKeys();
// Every lookup counts, so the counters are one global, reached without a call.
extern DatabaseCounters gDatabaseCounters;
inline DatabaseCounters& Counters() { return gDatabaseCounters; }

// Interns through the process-wide table, counting the call.
inline uint32_t HashValue(std::string_view name) {
  ++Counters().hashCalls;
  return ProcessKeys().HashValue(name);
}

}  // namespace grindle
