#include "Core/SystemBase.h"

#include <cstdio>

#include "Core/Assert.h"
#include "Core/Database.h"
#include "Core/MemoryManager.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

void SystemBase::synchronize(void** args, int count) {
  const int icount = count;
  GRINDLE_ASSERT(icount < 4, "wrong arg count passed to synchronize");
  pDatabase_ = static_cast<Database*>(args[kSyncDatabase]);
  pThreadManager_ = static_cast<ThreadManager*>(args[kSyncThreadManager]);
  InstallMemoryRegistry(static_cast<MemoryManagerRegistry*>(args[kSyncMemoryRegistry]));

  const DataHandle<Database> systems = pDatabase_->Find<Database>(KeyOf(WellKnown::Systems));
  if (systems) {
    const DataHandle<MessageHandler*> handler =
        systems->Find<MessageHandler*>(KeyOf(WellKnown::MessageHandler));
    if (handler) pMessageHandler_ = *handler;
  }
  OnSynchronize();
}

void SystemBase::PrintLifeCycle(const char* step) const {
  std::printf("%s%s\n", step, sShortName_.c_str());
}

MessageHandler& SystemBase::Messages() const {
  GRINDLE_ASSERT(pMessageHandler_ == nullptr, "Systems.MessageHandler is missing from the database");
  return *pMessageHandler_;
}

void SystemBase::Load() {
  PrintLifeCycle("Load");
  OnLoad();
}

void SystemBase::Start() {
  if (startLine_ == StartLine::kPrinted) PrintLifeCycle("Start");
  OnStart();
}

void SystemBase::Update(float) {}

void SystemBase::Exit() {
  PrintLifeCycle("Exit");
  OnExit();
}

void SystemBase::Unload() {
  PrintLifeCycle("Unload");
  OnUnload();
}

}  // namespace grindle
