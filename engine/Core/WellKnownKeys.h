// The 170 well-known entry names, interned at start-up so that hot paths look entries up by a
// key kept in a table instead of interning a name. Interned into an empty key table they receive
// the first keys in table order (7, 14, 21, ...). Names that differ only in case (ViewX/viewX,
// Filename/FileName, Type/type) are distinct keys.
#pragma once

#include <cstddef>
#include <cstdint>

namespace grindle {

#define GRINDLE_WELL_KNOWN_KEYS(X) \
  X(Transform) X(Body) X(Bodies) X(BodyGetBack) X(GameObjects) X(ComponentLists) X(PositionX) X(PositionY) \
  X(PositionZ) X(RotationX) X(RotationY) X(RotationZ) X(Rotation) X(Scale) X(ShapeScale) X(ShapeOffsetX) \
  X(ShapeOffsetY) X(ShapeOffsetZ) X(IsAwake) X(Static) X(GravityFactor) X(CollisionFilter) X(Restitution) X(Count) \
  X(Scripts) X(GlobalVariables) X(WinsPlayer0) X(WinsPlayer1) X(WinsPlayer2) X(WinsPlayer3) X(ActivePlayer0) X(ActivePlayer1) \
  X(ActivePlayer2) X(ActivePlayer3) X(AutoPlay) X(PotatoY) X(PlayerPowerUp0) X(PlayerPowerUp1) X(PlayerPowerUp2) X(PlayerPowerUp3) \
  X(PlayerTeam0) X(PlayerTeam1) X(PlayerTeam2) X(PlayerTeam3) X(SelectedWorld) X(GameMode) X(PlayerModel0) X(PlayerModel1) \
  X(PlayerModel2) X(PlayerModel3) X(DrawSceneOverMenu) X(MenuAdUPosition) X(Menus) X(LuaState) X(Levels) X(NextLevel) \
  X(CurrentLevel) X(Systems) X(MessageHandler) X(ResourceManager) X(hAppInstance) X(GameTimer) X(DT) X(isGamePaused) \
  X(WindowWidth) X(WindowHeight) X(MainWindowHandle) X(CurrentCamera) X(ViewX) X(ViewY) X(ViewZ) X(UpX) \
  X(UpY) X(UpZ) X(viewX) X(viewY) X(viewZ) X(MeshIndex) X(InputFunction) X(MouseInputFunction) \
  X(GameObjectArchetypes) X(Mesh) X(Filename) X(FileName) X(MainCamera) X(Camera) X(Diffuse) X(Ambient) \
  X(Specular) X(DirectionX) X(DirectionY) X(DirectionZ) X(Player) X(Player0) X(Player1) X(Player2) \
  X(Player3) X(Templates) X(MessageParam) X(EventMessage) X(MenuItem) X(Light) X(type) X(SpotExponent) \
  X(SpotInnerAngle) X(SpotOuterAngle) X(Range) X(Attenuation) X(PositionOffsetX) X(PositionOffsetY) X(PositionOffsetZ) X(ModelSkinned) \
  X(TimeMarker) X(AnimationName) X(Name) X(FinalTransformations) X(ModelStatic) X(StaticModels) X(SkinnedModels) X(Material) \
  X(Glow) X(r) X(g) X(b) X(UseDefault) X(ParticleSystem) X(ParticleSystems) X(Type) \
  X(EmitDirectionX) X(EmitDirectionY) X(EmitDirectionZ) X(SpriteHUD) X(SpriteWorld) X(IsText) X(Font) X(ImageFileName) \
  X(Message) X(PixelScale) X(Color) X(RelativePositionX) X(RelativePositionY) X(RelativePositionZ) X(IsBillboarded) X(RelativeRotationX) \
  X(RelativeRotationY) X(RelativeRotationZ) X(HorizontalAlignment) X(VerticalAlignment) X(ScreenPositionX) X(ScreenPositionY) X(Width) X(TextureTransform) \
  X(translateU) X(translateV) X(scaleU) X(scaleV) X(Meshes) X(TextureName) X(HasTexture) X(HasNormalMap) \
  X(HasSpecularMap) X(NormalMapName) X(SpecularMapName) X(Potato) X(Lights) X(wMonth) X(wDay) X(wDayOfWeek) \
  X(wHour) X(wMinute)

enum class WellKnown : uint32_t {
#define GRINDLE_KEY_ENUM(name) name,
  GRINDLE_WELL_KNOWN_KEYS(GRINDLE_KEY_ENUM)
#undef GRINDLE_KEY_ENUM
  kCount
};

inline constexpr size_t kWellKnownKeyCount = static_cast<size_t>(WellKnown::kCount);

// The names in table order, and the keys they received (parallel to the names).
extern const char* const kWellKnownKeyNames[kWellKnownKeyCount];
extern uint32_t gWellKnownKeys[kWellKnownKeyCount];

// Interns every well-known name through HashValue and fills the key table.
void InternWellKnownKeys();

inline uint32_t KeyOf(WellKnown name) { return gWellKnownKeys[static_cast<size_t>(name)]; }

}  // namespace grindle
