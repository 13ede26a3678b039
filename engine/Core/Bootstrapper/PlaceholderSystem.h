// Stands in for a system whose library is not part of this build: it passes through the life
// cycle under the real system's short name, printing the same lines, and does nothing else. Only
// SystemList creates it; once the real library exists the build picks that up instead.
#pragma once

#include <string>
#include <utility>

#include "Core/SystemBase.h"

namespace grindle {

class PlaceholderSystem final : public SystemBase {
 public:
  explicit PlaceholderSystem(std::string shortName, StartLine startLine = StartLine::kPrinted)
      : SystemBase(std::move(shortName), startLine) {}
  // The audio system prints no Start line; its stand-in keeps that.
  static constexpr StartLine kSilentStart = StartLine::kSilent;
};

}  // namespace grindle
