-- Reads a menu description (Assets/GameObjects/MainMenu.xml, PauseMenu.xml): one Database per menu,
-- in it one Database per item, in order, with the strings Label and Action. Only that shape of the
-- typed XML is read; a file that cannot be opened is an error naming it.
local MenuFile = {}

function MenuFile.Read(path)
  local file = io.open(path, "r")
  if file == nil then error("cannot open menu file " .. path) end
  local menus, menu, item, depth = {}, nil, nil, 0
  local lineNumber = 0
  for line in file:lines() do
    lineNumber = lineNumber + 1
    local opened = string.match(line, '^%s*<Database name="([^"]+)">')
    local key, value = string.match(line, '<string name="([^"]+)">(.-)</string>')
    if opened then
      depth = depth + 1
      if depth == 1 then menu = {}; menus[opened] = menu
      elseif depth == 2 then item = {}; table.insert(menu, item) end
    end
    if key then
      if item == nil then error(path .. ":" .. lineNumber .. ": " .. key .. " outside a menu item") end
      item[key] = value
    end
    if string.match(line, "</Database>%s*$") then
      if depth == 2 then item = nil end
      depth = depth - 1
    end
  end
  file:close()
  return menus
end

return MenuFile
