-- The renderer showcase level: the scene shader set is loaded when the level starts, since no
-- menu comes first to ask for it.
function Start(me)
  Send("LoadShaders")
end

function Update() end

function End() end
