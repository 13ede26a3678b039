-- Writes the party game's screens and arenas (game/Assets/Levels/*.xml) from the tables below, so
-- that a new arena is a few lines here instead of hundreds of lines of typed XML. Run from the
-- repository root with `lua5.2 tools/levelgen/MakeLevels.lua [FOLDER/]` (default game/Assets/Levels/)
-- and commit what it writes; the
-- engine never runs it.
local out = arg[1] or "game/Assets/Levels/"

local function Num(v) return string.format("%g", v) end

local function Writer()
  local lines, depth = {}, 0
  local w = {}
  function w.Line(text) table.insert(lines, string.rep("  ", depth) .. text) end
  function w.Open(name) w.Line('<Database name="' .. name .. '">'); depth = depth + 1 end
  function w.Close() depth = depth - 1; w.Line("</Database>") end
  function w.Double(name, v) w.Line('<double name="' .. name .. '">' .. Num(v) .. '</double>') end
  function w.String(name, v) w.Line('<string name="' .. name .. '">' .. v .. '</string>') end
  function w.Float4(name, t, kind)
    w.Line('<' .. (kind or "xmfloat4") .. ' name="' .. name .. '">' .. Num(t[1]) .. " " .. Num(t[2]) ..
           " " .. Num(t[3]) .. (t[4] and (" " .. Num(t[4])) or "") .. '</' .. (kind or "xmfloat4") .. '>')
  end
  function w.Text() return table.concat(lines, "\n") .. "\n" end
  return w
end

-- Components ---------------------------------------------------------------------------------

local function Transform(w, p, scale, yaw)
  w.Open("Transform")
  w.Double("PositionX", p[1]); w.Double("PositionY", p[2]); w.Double("PositionZ", p[3])
  w.Double("RotationX", 0); w.Double("RotationY", yaw or 0); w.Double("RotationZ", 0)
  w.Line('<xmmatrix4 name="Rotation">identity</xmmatrix4>')
  w.Float4("Scale", scale, "vec4")
  w.Close()
end

local function Material(w, colour, glow)
  w.Open("Material")
  w.Float4("Ambient", {colour[1] * 0.3, colour[2] * 0.3, colour[3] * 0.3, 1})
  w.Float4("Diffuse", {colour[1], colour[2], colour[3], 1})
  w.Float4("Specular", {0.3, 0.3, 0.3, 16})
  w.Close()
  if glow then
    w.Open("Glow"); w.Double("r", glow[1]); w.Double("g", glow[2]); w.Double("b", glow[3]); w.Close()
  end
end

local function MeshAndMaterial(w, file, colour, glow, texture)
  w.Open("Mesh")
  w.String("Filename", file)
  w.Double("HasTexture", texture and 1 or 0)
  if texture then w.String("TextureName", texture) end
  w.Close()
  Material(w, colour, glow)
end

local function Body(w, shapeScale, static, extra)
  w.Open("Body")
  w.Float4("ShapeScale", shapeScale, "vec4")
  w.Double("ShapeOffsetX", 0); w.Double("ShapeOffsetY", 0); w.Double("ShapeOffsetZ", 0)
  w.Double("IsAwake", 1)
  w.Double("Static", static and 1 or 0)
  for key, value in pairs(extra or {}) do w.Double(key, value) end
  w.Close()
end

local function Camera(w, p, view)
  w.Open("MainCamera")
  w.Open("Camera")
  w.Double("PositionX", p[1]); w.Double("PositionY", p[2]); w.Double("PositionZ", p[3])
  w.Double("viewX", view[1]); w.Double("viewY", view[2]); w.Double("viewZ", view[3])
  w.Close()
  w.Close()
end

local function Script(w, file)
  w.Open("Script"); w.String("FileName", file); w.Close()
end

-- A screen-space sprite at x, y (fractions of the screen, 0, 0 top left); `write` adds the keys of
-- its kind between the colour and the placement.
local function HudSprite(w, name, colour, x, y, align, write)
  w.Open(name)
  w.Open("SpriteHUD")
  w.Float4("Color", colour)
  write()
  w.String("HorizontalAlignment", align or "center")
  w.String("VerticalAlignment", "center")
  w.Double("ScreenPositionX", x); w.Double("ScreenPositionY", y)
  w.Close()
  w.Close()
end

local function HudText(w, name, text, x, y, font, scale, colour, align)
  HudSprite(w, name, colour or {1, 1, 1, 1}, x, y, align, function()
    w.Double("IsText", 1)
    w.String("Font", font or "Hud")
    w.String("Message", text)
    w.Double("PixelScale", scale or 1)
  end)
end

local function HudImage(w, name, image, x, y, width, alpha)
  HudSprite(w, name, {1, 1, 1, alpha or 1}, x, y, "center", function()
    w.Double("IsText", 0)
    w.String("ImageFileName", image)
    w.Double("Width", width)
  end)
end

-- A model instead of a primitive: "Character" is skinned (its clips Idle and Run), the others
-- ("Crate", "Barrel", "Pillar", "Potato") static; the material colour tints the model's own.
local function ModelAndMaterial(w, model, colour, glow)
  if model == "Character" then
    w.Open("ModelSkinned"); w.String("Name", model); w.String("AnimationName", "Idle"); w.Close()
  else
    w.Open("ModelStatic"); w.String("Name", model); w.Close()
  end
  Material(w, colour, glow)
end

local function Prop(w, name, file, p, scale, colour, options)
  options = options or {}
  w.Open(name)
  Transform(w, p, scale, options.yaw)
  if string.find(file, ".mesh", 1, true) then
    MeshAndMaterial(w, file, colour, options.glow, options.texture)
  else
    ModelAndMaterial(w, file, colour, options.glow)
  end
  if options.body then Body(w, options.body, options.static ~= false, options.bodyExtra) end
  if options.script then Script(w, options.script) end
  w.Close()
end

-- A particle emitter at p: Fire, Explosion, Rain, Dust, ... (an object of its own).
local function Particles(w, name, kind, p)
  w.Open(name)
  w.Open("Transform")
  w.Double("PositionX", p[1]); w.Double("PositionY", p[2]); w.Double("PositionZ", p[3])
  w.Close()
  w.Open("ParticleSystem")
  w.String("Type", kind)
  w.Double("EmitDirectionX", 0); w.Double("EmitDirectionY", 0); w.Double("EmitDirectionZ", 0)
  w.Close()
  w.Close()
end

local function Light(w, name, kind, fields)
  w.Open(name)
  w.Open("Light")
  w.String("type", kind)
  for _, f in ipairs(fields) do
    if type(f[2]) == "table" then w.Float4(f[1], f[2]) else w.Double(f[1], f[2]) end
  end
  w.Close()
  w.Close()
end

local function Level(title, comment, build)
  local w = Writer()
  w.Line("<!-- " .. comment .. " -->")
  w.String("LevelTitle", title)
  w.Line("<!-- The renderer registers each mesh object in this list as the object is announced. -->")
  w.Open("ComponentLists"); w.Open("Meshes"); w.Close(); w.Close()
  w.Open("GameObjects")
  build(w)
  w.Close()
  return w.Text()
end

local function Save(name, text)
  local file = assert(io.open(out .. name .. ".xml", "w"))
  file:write(text)
  file:close()
end

-- The game ---------------------------------------------------------------------------------

local kPlayerColours = {{0.9, 0.2, 0.2}, {0.2, 0.45, 0.95}, {0.2, 0.8, 0.3}, {0.95, 0.8, 0.15}}

-- A menu backdrop: the camera looks at +z from (0, 0, -10); the bars sit where the menu lines are.
local function MenuScreen(w, title, itemPrefix, items, script)
  Camera(w, {0, 0, -10}, {0, 0, 1})
  w.Open("MenuController"); Script(w, script); w.Close()
  HudText(w, "Title", title, 0.5, 0.18, "Title", 1, {1, 0.85, 0.3, 1})
  local halfHeight = 10 * math.tan(math.pi / 8)
  for i = 0, items - 1 do
    HudText(w, itemPrefix .. i, "", 0.5, 0.42 + i * 0.085)
    local y = (0.5 - (0.42 + i * 0.085)) * 2 * halfHeight
    Prop(w, itemPrefix .. "Bar" .. i, "Box.mesh", {0, y, 2}, {5, 0.55, 0.2}, {0.15, 0.15, 0.2})
  end
  Prop(w, "Backdrop", "Box.mesh", {0, 0, 6}, {30, 20, 1}, {0.12, 0.1, 0.16})
  -- Beside the title, on its left on the screen (the screen's left is +x here).
  Prop(w, "TitlePotato", "Potato", {4.3, 2.65, 2}, {1.6, 1.6, 1.6}, {1, 1, 1}, {glow = {0.9, 0.5, 0.1}})
end

Save("SplashScreens", Level("Potato Panic", "The first level the engine requests: the game's name.",
  function(w)
    Camera(w, {0, 0, -6}, {0, 0, 1})
    Prop(w, "Logo", "Potato", {0, -0.3, 0}, {2.8, 2.8, 2.8}, {1, 1, 1},
         {glow = {0.9, 0.45, 0.1}, script = "Splash.lua"})
    HudText(w, "Title", "Potato Panic", 0.5, 0.2, "Title", 1.5, {1, 0.85, 0.3, 1})
    HudText(w, "Studio", "a Grindle game", 0.5, 0.85)
  end))

Save("LevelTitleScreen", Level("Main menu", "The main menu: play, options, quit.", function(w)
  MenuScreen(w, "Potato Panic", "MenuItem", 5, "MainMenu.lua")
end))

Save("Lobby", Level("Lobby", "Players join, pick a character and a team; then mode and world.",
  function(w)
    MenuScreen(w, "Lobby", "MenuItem", 4, "Lobby.lua")
    for i = 0, 3 do
      local x = (1.5 - i) * 2.6  -- screen left to right is world +x to -x
      Prop(w, "Player" .. i, "Character", {x, -2.6, 0}, {0.9, 0.9, 0.9}, kPlayerColours[i + 1], {yaw = math.pi})
      HudText(w, "Slot" .. i, "", 0.2 + i * 0.2, 0.93)
    end
    HudText(w, "Help", "", 0.5, 0.3)
  end))

Save("Results", Level("Results", "Who won the match, then back to the lobby.", function(w)
  Camera(w, {0, 1, -10}, {0, -0.1, 1})
  w.Open("MenuController"); Script(w, "Results.lua"); w.Close()
  HudText(w, "Title", "", 0.5, 0.18, "Title", 1.2, {1, 0.85, 0.3, 1})
  for i = 0, 3 do
    HudText(w, "Score" .. i, "", 0.5, 0.45 + i * 0.08)
    Prop(w, "Player" .. i, "Character", {(1.5 - i) * 2.6, -2, 0}, {0.9, 0.9, 0.9}, kPlayerColours[i + 1],
         {yaw = math.pi})
  end
  Prop(w, "Podium", "Box.mesh", {0, -3.2, 0}, {12, 0.8, 3}, {0.5, 0.45, 0.4})
  Prop(w, "Backdrop", "Box.mesh", {0, 0, 6}, {30, 20, 1}, {0.1, 0.12, 0.18})
end))

-- An arena: a square floor of side 2 * half walled in, obstacles, four players, the potato, the
-- fuse bar, three power-ups, the blast, lights and the HUD.
local function Arena(name, look)
  Save(name, Level(look.title, look.comment, function(w)
    Camera(w, {0, 16, -14}, {0, -1.1, 1})
    w.Open("Referee"); Script(w, "Round.lua"); w.Close()
    local half = 10
    Prop(w, "Floor", "Box.mesh", {0, -0.5, 0}, {2 * half, 1, 2 * half}, look.floor,
         {body = {0.5, 0.5, 0.5}, texture = look.floorTexture})
    local walls = {
      {"WallNorth", {0, 0.75, half + 0.5}, {2 * half + 2, 1.5, 1}},
      {"WallSouth", {0, 0.75, -half - 0.5}, {2 * half + 2, 1.5, 1}},
      {"WallEast", {half + 0.5, 0.75, 0}, {1, 1.5, 2 * half}},
      {"WallWest", {-half - 0.5, 0.75, 0}, {1, 1.5, 2 * half}},
    }
    for _, wall in ipairs(walls) do
      Prop(w, wall[1], "Box.mesh", wall[2], wall[3], look.wall, {body = {0.5, 0.5, 0.5}})
    end
    for i, o in ipairs(look.obstacles) do
      Prop(w, "Obstacle" .. i, o.file, o.p, o.scale, o.colour, {body = o.shape or {0.5, 0.5, 0.5}})
    end
    local spawn = {{-6, 6}, {6, 6}, {-6, -6}, {6, -6}}
    for i = 0, 3 do
      Prop(w, "Player" .. i, "Character", {spawn[i + 1][1], 0.85, spawn[i + 1][2]},
           {0.8, 0.8, 0.8}, kPlayerColours[i + 1],
           {body = {0.55, 1, 0.55}, static = false, bodyExtra = {Restitution = 0}})
    end
    Prop(w, "Potato", "Potato", {0, -30, 0}, {1, 1, 1}, {1, 1, 1}, {glow = {1, 0.5, 0.1}})
    for i = 0, 4 do
      Prop(w, "FuseBar" .. i, "Box.mesh", {0, -30, 0}, {0.28, 0.2, 0.2}, {1, 0.6, 0.1}, {glow = {1, 0.4, 0}})
    end
    Prop(w, "Blast", "Sphere.mesh", {0, -30, 0}, {1, 1, 1}, {1, 0.5, 0.1}, {glow = {1, 0.6, 0.2}})
    Particles(w, "BlastFire", "Explosion", {0, -30, 0})
    for i = 0, 3 do Particles(w, "Dust" .. i, "Dust", {0, -30, 0}) end
    for i, p in ipairs(look.fires or {}) do Particles(w, "Fire" .. i, "Fire", p) end
    if look.rain then Particles(w, "Rain", "Rain", {0, 0, 0}) end
    -- The light manager draws the sky dome for a level that has an entry named Sky.
    w.Open("SkyDome"); w.String("Sky", "gradient"); w.Close()
    local powerUps = {{"PowerUpSpeed", {0.2, 0.9, 1}}, {"PowerUpShield", {0.6, 0.3, 1}},
                      {"PowerUpFuse", {1, 0.3, 0.2}}}
    for _, p in ipairs(powerUps) do
      Prop(w, p[1], "Box.mesh", {0, -30, 0}, {0.7, 0.7, 0.7}, p[2],
           {glow = p[2], body = {0.8, 0.8, 0.8}, static = false, bodyExtra = {GravityFactor = 0}})
    end
    Light(w, "Sun", "Directional", {{"Ambient", look.ambient}, {"Diffuse", look.sun},
                                    {"Specular", {0.4, 0.4, 0.4, 1}}, {"DirectionX", 0.4},
                                    {"DirectionY", -1}, {"DirectionZ", 0.5}})
    -- The HUD: a banner, the fuse, who holds the potato, round wins and power-ups per player.
    HudText(w, "HudBanner", "", 0.5, 0.4, "Title", 1, {1, 0.85, 0.3, 1})
    HudText(w, "HudFuse", "", 0.5, 0.06, "Title", 0.8, {1, 0.5, 0.2, 1})
    HudText(w, "HudHolder", "", 0.5, 0.13)
    for i = 0, 3 do
      local x = 0.14 + i * 0.24
      local c = kPlayerColours[i + 1]
      HudText(w, "HudScore" .. i, "", x, 0.93, "Hud", 1, {c[1], c[2], c[3], 1})
      HudImage(w, "HudPower" .. i, "Speed.png", x + 0.09, 0.93, 32, 0)
    end
    -- The pause menu keeps to the left: the paused arena is drawn over the middle and the bottom
    -- right of the screen (the renderer's picture-in-picture covers 30-80% across, 40-90% down).
    HudImage(w, "PausePanel", "Panel.png", 0.15, 0.635, 300, 0)
    HudText(w, "PauseTitle", "", 0.15, 0.43, "Title", 0.8)
    for i = 0, 2 do HudText(w, "PauseItem" .. i, "", 0.15, 0.55 + i * 0.085) end
  end))
end

Arena("Arena", {
  title = "Garden", comment = "The garden arena: grass, crates and pillars in daylight.",
  floor = {0.35, 0.6, 0.3}, wall = {0.55, 0.45, 0.35}, sun = {1, 0.95, 0.85, 1},
  ambient = {0.35, 0.35, 0.33, 1},
  fires = {{0, 2, 4}, {0, 2, -4}},
  obstacles = {
    {file = "Crate", p = {-3, 0.6, 0}, scale = {1.2, 1.2, 1.2}, colour = {1, 1, 1}},
    {file = "Crate", p = {3, 0.6, 1}, scale = {1.2, 1.2, 1.2}, colour = {1, 1, 1}},
    {file = "Pillar", p = {0, 1, 4}, scale = {1, 0.5, 1}, colour = {1, 1, 1}, shape = {0.55, 2, 0.55}},
    {file = "Pillar", p = {0, 1, -4}, scale = {1, 0.5, 1}, colour = {1, 1, 1}, shape = {0.55, 2, 0.55}},
  },
})

Arena("ArenaStorm", {
  title = "Storm", comment = "The storm arena: a dark stone yard with barrels at night.",
  floor = {0.3, 0.3, 0.36}, wall = {0.25, 0.25, 0.3}, sun = {0.45, 0.5, 0.7, 1},
  ambient = {0.15, 0.15, 0.22, 1},
  rain = true,
  fires = {{-4, 1.4, 3}, {4, 1.4, -3}},
  obstacles = {
    {file = "Barrel", p = {-4, 0.72, 3}, scale = {1.2, 1.2, 1.2}, colour = {1, 1, 1}},
    {file = "Barrel", p = {4, 0.72, -3}, scale = {1.2, 1.2, 1.2}, colour = {1, 1, 1}},
    {file = "Crate", p = {-5, 0.5, -4}, scale = {1, 1, 1}, colour = {0.7, 0.7, 0.8}},
    {file = "Box.mesh", p = {0, 0.5, 0}, scale = {3, 1, 0.8}, colour = {0.35, 0.35, 0.4}},
  },
})
