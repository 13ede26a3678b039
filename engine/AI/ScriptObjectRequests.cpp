// The requests that change objects and the AI system's own timers rather than moving bodies:
// colour, creation from an archetype, destruction, countdowns and the date flag.
#include <cmath>
#include <cstdio>
#include <glm/vec4.hpp>
#include <string>

#include "AI/DataPath.h"
#include "AI/ScriptRequests.h"
#include "Core/Database.h"
#include "Core/DatabaseNumbers.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/WellKnownKeys.h"

namespace grindle {

// The diffuse colour (r, g, b) of the object's Material, in whichever four-float form the level
// file gave it; alpha is kept. An object without a Material gets one.
void ScriptRequests::SetColor(MessageArgs args) {
  const DataHandle<Database> object = ObjectNamed(args);
  if (!object) return;
  DataHandle<Database> material = object->Find<Database>(KeyOf(WellKnown::Material));
  if (!material) material = object->Add<Database>("Material");
  const float rgb[3] = {static_cast<float>(msg::ScriptNumber::Read(args[1])),
                        static_cast<float>(msg::ScriptNumber::Read(args[2])),
                        static_cast<float>(msg::ScriptNumber::Read(args[3]))};
  if (!WriteFourComponents(*material, KeyOf(WellKnown::Diffuse), 0, 3, rgb)) {
    material->Add<glm::vec4>("Diffuse", glm::vec4(rgb[0], rgb[1], rgb[2], 1.0f));
  }
}

void ScriptRequests::CreateObject(MessageArgs args) {
  const std::string archetypeName = msg::TextOr(args[0]);
  const std::string name = msg::TextOr(args[1]);
  const DataHandle<Database> archetype =
      ResolveDatabase(root_, "GameObjectArchetypes." + archetypeName);
  const DataHandle<std::string> level = root_.Find<std::string>(KeyOf(WellKnown::CurrentLevel));
  const DataHandle<Database> objects =
      level ? ResolveDatabase(root_, "Levels." + *level + ".GameObjects") : DataHandle<Database>{};
  if (!archetype || !objects) {
    std::printf("%s: no archetype \"%s\" or no current level to put it in\n",
                msg::NameOf(msg::scr::kCreateObject), archetypeName.c_str());
    return;
  }
  // Replacing a live object would pull its data out from under the systems that hold it.
  if (objects->FindEntry(name) != nullptr) {
    std::printf("%s: an object named \"%s\" already exists\n", msg::NameOf(msg::scr::kCreateObject),
                name.c_str());
    return;
  }
  const DataHandle<Database> copy = objects->Add<Database>(name, *archetype);
  msg::Post(messages_, msg::kObjectCreated, copy, name, *level);
}

void ScriptRequests::DestroyObject(MessageArgs args) {
  msg::Post(messages_, msg::kObjectDestroyed, msg::TextOr(args[0]));
}

void ScriptRequests::SetCountdown(MessageArgs args) {
  const double index = msg::ScriptNumber::Read(args[0]);
  // Written so that NaN fails too: only whole numbers from 0 up to the last countdown pass.
  const bool isIndex = std::isfinite(index) && std::trunc(index) == index && index >= 0.0 &&
                       index < static_cast<double>(kCountdownCount);
  if (!isIndex) {
    std::printf("%s: no countdown %g (there are %zu, from 0)\n",
                msg::NameOf(msg::scr::kSetCountdown), index, kCountdownCount);
    return;
  }
  timers_.countdowns[static_cast<size_t>(index)] = msg::ScriptNumber::Read(args[1]);
}

void ScriptRequests::TrackDate(MessageArgs args) {
  timers_.isDateTracked = msg::ScriptNumber::Read(args[0]) != 0.0;
}

}  // namespace grindle
