#include "Graphics/Effects/EffectSlots.h"

#include <cstdio>
#include <functional>
#include <vector>

#include "Core/Database.h"
#include "Core/MessageHandler.h"
#include "Core/Messages/Catalogue.h"
#include "Core/Messages/RouteTable.h"
#include "Graphics/Effects/InputLayouts.h"

namespace grindle::gfx {

namespace {

// A changed effect file is rebuilt in its slot.
constexpr msg::Route<EffectLibrary> kReloadRoutes[] = {
    {msg::kResourceReloaded,
     [](EffectLibrary& effects, MessageArgs args) {
       if (const std::string* name = msg::kResourceReloaded.Read<0>(args)) effects.Reload(*name);
     }},
};
constexpr msg::RouteTable<EffectLibrary> kReloadTable{"EffectSlots", kReloadRoutes};

struct SlotRecord {
  const char* file;  // within the shader folder
  bool isStartup;
  // Creates the wrapper from a path into its slot, replacing what was there.
  std::function<void(EffectSlots&, std::string)> create;
  std::function<Effect*(EffectSlots&)> get;
};

template <class Wrapper>
SlotRecord Slot(const char* file, bool isStartup, std::unique_ptr<Wrapper> EffectSlots::*member) {
  return {file, isStartup,
          [member](EffectSlots& slots, std::string path) {
            auto fresh = std::make_unique<Wrapper>(std::move(path));
            // A reload that does not compile keeps the scene drawn with the programs it had.
            if (slots.*member != nullptr && !fresh->IsLoaded()) {
              std::printf("%s did not load; the effect in use stays\n", fresh->FileName().c_str());
              return;
            }
            slots.*member = std::move(fresh);
          },
          [member](EffectSlots& slots) -> Effect* { return (slots.*member).get(); }};
}

// In the order each set creates its wrappers.
const std::vector<SlotRecord>& SlotTable() {
  static const std::vector<SlotRecord> table = {
      Slot("basic.fx", false, &EffectSlots::basic),
      Slot("color.fx", false, &EffectSlots::color),
      Slot("BasicSkinned.fx", false, &EffectSlots::normalMap),
      Slot("ShadowMap.fx", false, &EffectSlots::shadowMap),
      Slot("BasicInstanced.fx", false, &EffectSlots::instanced),
      Slot("GlowMap.fx", false, &EffectSlots::glowMap),
      Slot("ExplosionSmall.fx", false, &EffectSlots::explosionSmall),
      Slot("ExplosionMine.fx", false, &EffectSlots::explosionMine),
      Slot("Dust.fx", false, &EffectSlots::dust),
      Slot("Blink.fx", false, &EffectSlots::blink),
      Slot("Sprite.fx", true, &EffectSlots::sprite),
      Slot("sky.fx", true, &EffectSlots::sky),
      Slot("PostProcessing.fx", true, &EffectSlots::drawQuad),
      Slot("Fire.fx", true, &EffectSlots::fire),
      Slot("explosion.fx", true, &EffectSlots::explosion),
      Slot("Rain.fx", true, &EffectSlots::rain),
  };
  return table;
}

std::string PathOf(const SlotRecord& slot) { return std::string(kShaderFolder) + slot.file; }

}  // namespace

void EffectLibrary::CreateSet(bool isStartup) {
  for (const SlotRecord& slot : SlotTable()) {
    if (slot.isStartup == isStartup) slot.create(slots_, PathOf(slot));
  }
}

void EffectLibrary::LoadStartup() {
  kReloadTable.Listen(messages_, *this);
  listening_ = true;
  CreateSet(true);
  layouts_.CreateStartup(slots_);
}

void EffectLibrary::LoadScene() {
  if (sceneLoaded_) return;
  CreateSet(false);
  sceneLoaded_ = true;
}

void EffectLibrary::Unload() {
  if (listening_) kReloadTable.UnListen(messages_);
  listening_ = false;
  layouts_.Destroy();
  slots_ = EffectSlots{};
  sceneLoaded_ = false;
}

std::vector<std::string> EffectFilePaths() {
  std::vector<std::string> paths;
  for (const SlotRecord& slot : SlotTable()) paths.push_back(PathOf(slot));
  return paths;
}

bool EffectLibrary::Reload(std::string_view fileName) {
  const size_t dot = fileName.rfind('.');
  if (dot == std::string_view::npos || fileName.substr(dot + 1) != "fx") return false;
  for (const SlotRecord& slot : SlotTable()) {
    if (PathOf(slot) != fileName || slot.get(slots_) == nullptr) continue;
    slot.create(slots_, std::string(fileName));
    // Layouts hold no program, but rebuild the set's layouts in case the inputs moved.
    if (slot.isStartup)
      layouts_.CreateStartup(slots_);
    else
      layouts_.CreateScene(slots_);
    return true;
  }
  return false;
}

}  // namespace grindle::gfx
