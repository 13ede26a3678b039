// The messages the physics system answers: object and level announcements that create and remove
// bodies, and the velocity and rotation requests scripts send. Registered under the owner "Physics"
// from Start to Exit. Main thread only; the Physics object must outlive the registration.
#pragma once

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Physics/Physics/Physics.h"

namespace grindle {

void ListenToPhysicsMessages(MessageHandler& messages, Physics& physics, Database& root);
void StopListeningToPhysicsMessages(MessageHandler& messages);

}  // namespace grindle
