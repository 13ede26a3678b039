// The common part of every engine system: synchronize keeps the shared services (root database,
// memory registry, thread manager, and the message handler found in the database) and each
// life-cycle step prints its line ("Load" + short name) before the system's own On* hook runs.
#pragma once

#include <string>

#include "Core/ISystem.h"

namespace grindle {

class Database;
class MessageHandler;
class ThreadManager;

class SystemBase : public ISystem {
 public:
  void synchronize(void** args, int count) final;
  void Load() final;
  void Start() final;
  void Update(float dt) override;
  void Exit() final;
  void Unload() final;

  const std::string& ShortName() const { return sShortName_; }

 protected:
  // The audio system alone prints no line when it starts.
  enum class StartLine { kPrinted, kSilent };
  explicit SystemBase(std::string shortName, StartLine startLine = StartLine::kPrinted)
      : sShortName_(std::move(shortName)), startLine_(startLine) {}
  virtual ~SystemBase() = default;

  virtual void OnSynchronize() {}
  virtual void OnLoad() {}
  virtual void OnStart() {}
  virtual void OnExit() {}
  virtual void OnUnload() {}

  Database& Root() const { return *pDatabase_; }
  // The message handler published under Systems.MessageHandler; asserts when there is none.
  MessageHandler& Messages() const;
  ThreadManager* Threads() const { return pThreadManager_; }

 private:
  void PrintLifeCycle(const char* step) const;

  std::string sShortName_;
  StartLine startLine_;
  Database* pDatabase_ = nullptr;
  ThreadManager* pThreadManager_ = nullptr;
  MessageHandler* pMessageHandler_ = nullptr;
};

}  // namespace grindle
