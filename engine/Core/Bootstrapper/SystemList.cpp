#include "Core/Bootstrapper/SystemList.h"

#include <utility>

#include "AI/AILibraryInterface.h"
#include "Audio/AudioLibraryInterface.h"
#include "Graphics/GraphicsLibraryInterface.h"
#include "Input/InputLibraryInterface.h"
#include "Networking/NetworkingLibraryInterface.h"
#include "Physics/PhysicsLibraryInterface.h"

namespace grindle {

template <class T, class... Args>
void SystemList::Append(Args&&... args) {
  T* system = new T(std::forward<Args>(args)...);
  systems_.push_back(system);
  deleters_.push_back([system] { delete system; });
}

void SystemList::CreateSystems() {
  Append<AIInterface>();
  Append<PhysicsInterface>();
  Append<NetworkingInterface>();
  Append<GraphicsInterface>();
  Append<AudioInterface>();
  Append<InputInterface>();
}

SystemList::~SystemList() {
  for (const auto& deleteSystem : deleters_) deleteSystem();
}

void SystemList::SynchronizeAll(void** args, int count) {
  for (ISystem* system : systems_) system->synchronize(args, count);
}

void SystemList::LoadAll() {
  for (ISystem* system : systems_) system->Load();
}

void SystemList::StartAll() {
  for (ISystem* system : systems_) system->Start();
}

void SystemList::ExitAll() {
  for (ISystem* system : systems_) system->Exit();
}

void SystemList::UnloadAll() {
  for (ISystem* system : systems_) system->Unload();
}

}  // namespace grindle
