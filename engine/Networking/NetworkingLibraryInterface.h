// The networking system: a full member of the life cycle that does no work yet. It is where
// network play will be added; its place (third) keeps every other system's call order fixed.
#pragma once

#include "Core/SystemBase.h"

namespace grindle {

class NetworkingInterface final : public SystemBase {
 public:
  NetworkingInterface() : SystemBase("Networking") {}
};

}  // namespace grindle
