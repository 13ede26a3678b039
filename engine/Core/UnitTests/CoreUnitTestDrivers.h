// The five drivers of the built-in tests, one per core service. Each registers its checks in its
// constructor in their fixed running order. Main thread only: the checks make their own databases,
// message handlers, pools and thread pools, and leave the engine's shared ones alone.
#pragma once

#include "Core/UnitTests/UnitTestDriver.h"

namespace grindle {

class MemoryManagerUnitTestDriver : public UnitTestDriver {
 public:
  MemoryManagerUnitTestDriver();
};

class ThreadManagerUnitTestDriver : public UnitTestDriver {
 public:
  ThreadManagerUnitTestDriver();
};

class DatabaseUnitTestDriver : public UnitTestDriver {
 public:
  DatabaseUnitTestDriver();
};

class ReflectionUnitTestDriver : public UnitTestDriver {
 public:
  ReflectionUnitTestDriver();
};

class MessageUnitTestDriver : public UnitTestDriver {
 public:
  MessageUnitTestDriver();
};

}  // namespace grindle
