#include "Core/Bootstrapper/SystemList.h"

#include <utility>

#include "Core/Bootstrapper/PlaceholderSystem.h"
#include "Networking/NetworkingLibraryInterface.h"

// Each system joins the build when its library exists; until then a stand-in takes its place.
#ifdef GRINDLE_HAS_AI
#include "AI/AILibraryInterface.h"
#endif
#ifdef GRINDLE_HAS_PHYSICS
#include "Physics/PhysicsLibraryInterface.h"
#endif
#ifdef GRINDLE_HAS_GRAPHICS
#include "Graphics/GraphicsLibraryInterface.h"
#endif
#ifdef GRINDLE_HAS_AUDIO
#include "Audio/AudioLibraryInterface.h"
#endif
#ifdef GRINDLE_HAS_INPUT
#include "Input/InputLibraryInterface.h"
#endif

namespace grindle {

template <class T, class... Args>
void SystemList::Append(Args&&... args) {
  T* system = new T(std::forward<Args>(args)...);
  systems_.push_back(system);
  deleters_.push_back([system] { delete system; });
}

void SystemList::CreateSystems() {
#ifdef GRINDLE_HAS_AI
  Append<AIInterface>();
#else
  Append<PlaceholderSystem>("AI");
#endif
#ifdef GRINDLE_HAS_PHYSICS
  Append<PhysicsInterface>();
#else
  Append<PlaceholderSystem>("Physics");
#endif
  Append<NetworkingInterface>();
#ifdef GRINDLE_HAS_GRAPHICS
  Append<GraphicsInterface>();
#else
  Append<PlaceholderSystem>("Graphics");
#endif
#ifdef GRINDLE_HAS_AUDIO
  Append<AudioInterface>();
#else
  Append<PlaceholderSystem>("Audio", PlaceholderSystem::kSilentStart);
#endif
#ifdef GRINDLE_HAS_INPUT
  Append<InputInterface>();
#else
  Append<PlaceholderSystem>("Input");
#endif
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
