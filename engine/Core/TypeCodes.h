// Type codes of stored values, shared by database entries and message arguments, and a per-type
// identity that lets typed reads refuse an entry or argument of another kind instead of
// reinterpreting it.
#pragma once

#include <cstdint>
#include <string>

namespace grindle {

class Database;

inline constexpr uint32_t kTypeDouble = 0;
inline constexpr uint32_t kTypeInt = 1;
inline constexpr uint32_t kTypeString = 2;
inline constexpr uint32_t kTypeBool = 3;
inline constexpr uint32_t kTypeDatabase = 4;
inline constexpr uint32_t kTypeOther = 6;
inline constexpr uint32_t kTypeNone = 7;

// Float is deliberately filed under the generic code although it prints as a float.
template <class T> inline constexpr uint32_t kEntryTypeCode = kTypeOther;
template <> inline constexpr uint32_t kEntryTypeCode<double> = kTypeDouble;
template <> inline constexpr uint32_t kEntryTypeCode<int> = kTypeInt;
template <> inline constexpr uint32_t kEntryTypeCode<std::string> = kTypeString;
template <> inline constexpr uint32_t kEntryTypeCode<bool> = kTypeBool;
template <> inline constexpr uint32_t kEntryTypeCode<Database> = kTypeDatabase;

// Message arguments only tell doubles and strings apart; everything else reads as "none".
template <class T> inline constexpr uint32_t kArgumentTypeCode = kTypeNone;
template <> inline constexpr uint32_t kArgumentTypeCode<double> = kTypeDouble;
template <> inline constexpr uint32_t kArgumentTypeCode<std::string> = kTypeString;

using KindId = const void*;

template <class T>
KindId KindOf() {
  static const char identity = 0;
  return &identity;
}

}  // namespace grindle
