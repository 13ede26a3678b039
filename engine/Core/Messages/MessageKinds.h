// The kinds a message argument can have, each with the one rule for building it (Sent) and for
// reading it back (Read). Every sender and receiver goes through these, so a conversion (numbers
// travel as doubles, the platform wants floats, objects travel as handles) is written only here.
// Read never fails loudly: an absent or mismatched argument reads as "nothing" for the caller to
// test.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include "Core/AbstractPointer.h"
#include "Core/DataHandle.h"

namespace grindle {
class Database;
}

namespace grindle::msg {

// A number. Sent as a double, as scripts and files write them; read from whatever numeric type an
// engine sender used (the window sends its sizes unsigned, older senders ints and bools).
struct Real {
  using Sent = double;
  static constexpr std::string_view kName = "number";
  static std::optional<double> Read(const AbstractPointerBase* argument) {
    if (argument == nullptr) return std::nullopt;
    if (const double* d = argument->As<double>()) return *d;
    if (const float* f = argument->As<float>()) return *f;
    if (const int* i = argument->As<int>()) return *i;
    if (const unsigned* u = argument->As<unsigned>()) return *u;
    if (const bool* b = argument->As<bool>()) return *b ? 1.0 : 0.0;
    return std::nullopt;
  }
};

// A whole number the window hands out (client sizes): sent unsigned, read like any number.
struct Whole {
  using Sent = unsigned int;
  static constexpr std::string_view kName = "unsigned";
  static std::optional<double> Read(const AbstractPointerBase* argument) {
    return Real::Read(argument);
  }
};

// A 32-bit integer (the pad index the script bridge hands the input system), read like any number.
struct Integer {
  using Sent = int32_t;
  static constexpr std::string_view kName = "integer";
  static std::optional<double> Read(const AbstractPointerBase* argument) {
    return Real::Read(argument);
  }
};

// A number as a script passed it: scripts may write a number as text ("3"), which counts as that
// number; anything else, or nothing, counts as 0.
struct ScriptNumber {
  using Sent = double;
  static constexpr std::string_view kName = "script number";
  static double Read(const AbstractPointerBase* argument) {
    if (const std::optional<double> number = Real::Read(argument)) return *number;
    const std::string* text = argument != nullptr ? argument->As<std::string>() : nullptr;
    return text != nullptr ? std::strtod(text->c_str(), nullptr) : 0.0;
  }
};

// Text: names of objects, levels, files, sounds. Null when the argument is not text.
struct Text {
  using Sent = std::string;
  static constexpr std::string_view kName = "text";
  static const std::string* Read(const AbstractPointerBase* argument) {
    return argument != nullptr ? argument->As<std::string>() : nullptr;
  }
};

// A game object as a handle to its sub-database; a null handle when absent.
struct Object {
  using Sent = DataHandle<Database>;
  static constexpr std::string_view kName = "object handle";
  static DataHandle<Database> Read(const AbstractPointerBase* argument) {
    const auto* handle = argument != nullptr ? argument->As<DataHandle<Database>>() : nullptr;
    return handle != nullptr ? *handle : DataHandle<Database>();
  }
};

// A copy of a device record (the keyboard, the mouse, the pads); null when absent. `Name` is the
// record's class name as the reference shows it.
template <class T>
struct Payload {
  using Sent = T;
  static constexpr std::string_view kName = "device copy";
  static const T* Read(const AbstractPointerBase* argument) {
    return argument != nullptr ? argument->As<T>() : nullptr;
  }
};

// The argument's text, or "" when it is not text.
inline std::string TextOr(const AbstractPointerBase* argument) {
  const std::string* text = Text::Read(argument);
  return text != nullptr ? *text : std::string();
}

}  // namespace grindle::msg
