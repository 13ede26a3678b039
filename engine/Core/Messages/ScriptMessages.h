// Catalogue: the AI system's messages: the events it sends to scripts ("SCR:" out), the requests
// scripts send to it ("SCR:" in) and what it sends on for them. Requests read their numbers with
// the script rule (a number written as text counts). Entry format as in CoreMessages.h; "SCR:"
// names are declared in msg::scr, so kSetBodySpeed there is the request and in msg its answer.
#pragma once

#define GRINDLE_AI_MESSAGES(M)                                                                    \
  M(kGamePaused, "GamePaused", (), "", "The game was paused.")                                   \
  M(kGameUnpaused, "GameUnpaused", (), "", "The game was unpaused.")                             \
  M(kConsolePrint, "ConsolePrint", (Text), "text", "Prints the text and a newline.")              \
  M(kExitToMainMenu, "ExitToMainMenuMSG", (), "", "Leaves the game for the main menu.")          \
  M(kAddForceToBody, "AddForceToBody", (Object, Real, Real, Real), "object, x, y, z",             \
    "Sent for \"SCR:AddForceToObject\"; nobody listens.")                                         \
  M(kAddRelativeForceToBody, "AddRelativeForceToBody", (Object, Real, Real, Real),                \
    "object, x, y, z", "Sent for \"SCR:AddRelativeForceToObject\"; nobody listens.")              \
  M(kSetBodySpeed, "SetBodySpeed", (Object, Real), "object, speed",                               \
    "Sent for \"SCR:SetBodySpeed\"; nobody listens.")                                              \
  M(kLeftStickDown, "msgLeftStick_Down", (Real), "pad", "The left stick stepped down.")          \
  M(kLeftStickUp, "msgLeftStick_Up", (Real), "pad", "The left stick stepped up.")                \
  M(kLeftStickLeft, "msgLeftStick_Left", (Real), "pad", "The left stick stepped left.")          \
  M(kLeftStickRight, "msgLeftStick_Right", (Real), "pad", "The left stick stepped right.")       \
  M(kRightStickDown, "msgRightStick_Down", (Real), "pad", "The right stick stepped down.")       \
  M(kRightStickUp, "msgRightStick_Up", (Real), "pad", "The right stick stepped up.")             \
  M(kRightStickLeft, "msgRightStick_Left", (Real), "pad", "The right stick stepped left.")       \
  M(kRightStickRight, "msgRightStick_Right", (Real), "pad", "The right stick stepped right.")

#define GRINDLE_SCRIPT_EVENTS(M)                                                                  \
  M(kPotatoExploded, "SCR:PotatoExploded", (), "", "Game event: the potato exploded.")           \
  M(kKeyboardTriggered, "SCR:KeyboardTriggered", (Text), "key", "A key went down this frame.")   \
  M(kKeyboardPressed, "SCR:KeyboardPressed", (Text), "key", "A key is held.")                    \
  M(kCheat, "SCR:Cheat", (Text), "cheat", "A cheat key went down.")                              \
  M(kMouseButtonTriggered, "SCR:MouseButtonTriggered", (Text), "button", "A button went down.")  \
  M(kMouseButtonPressed, "SCR:MouseButtonPressed", (Text), "button", "A button is held.")        \
  M(kMouseButtonReleased, "SCR:MouseButtonReleased", (Text), "button", "A button went up.")      \
  M(kMouseDeltaPosition, "SCR:MouseDeltaPosition", (Real, Real), "dx, dy", "The mouse moved.")   \
  M(kMousePosition, "SCR:MousePosition", (Real, Real), "x, y", "Where the mouse is.")            \
  M(kMouseWheel, "SCR:MouseWheel", (Real), "direction", "The wheel turned (1 forward, -1 back).") \
  M(kControllerLeftStick, "SCR:ControllerLeftStick", (Real, Real, Real), "pad, x, y",             \
    "The left stick is off centre.")                                                              \
  M(kControllerRightStick, "SCR:ControllerRightStick", (Real, Real, Real), "pad, x, y",           \
    "The right stick is off centre.")                                                             \
  M(kControllerButtonTriggered, "SCR:ControllerButtonTriggered", (Text, Real), "button, pad",     \
    "A pad button or trigger went down.")                                                         \
  M(kControllerButton, "SCR:ControllerButton", (Text, Real), "button, pad",                       \
    "A pad button or trigger is held.")                                                           \
  M(kMenuDown, "SCR:MenuDown", (Real), "pad", "Menus move down (either stick stepped down).")    \
  M(kMenuUp, "SCR:MenuUp", (Real), "pad", "Menus move up (either stick stepped up).")

#define GRINDLE_SCRIPT_REQUESTS(M)                                                                \
  M(kAddForceToObject, "SCR:AddForceToObject", (Text, ScriptNumber, ScriptNumber, ScriptNumber),  \
    "object name, x, y, z", "Sent on as \"AddForceToBody\".")                                     \
  M(kAddRelativeForceToObject, "SCR:AddRelativeForceToObject",                                    \
    (Text, ScriptNumber, ScriptNumber, ScriptNumber), "object name, x, y, z",                     \
    "Sent on as \"AddRelativeForceToBody\".")                                                     \
  M(kRotateObjectAboutY, "SCR:RotateObjectAboutY", (Text, ScriptNumber), "object name, angle",    \
    "Turns the body to the angle about +Y.")                                                      \
  M(kRotateObjectWithLightAboutY, "SCR:RotateObjectWithLightAboutY", (Text, ScriptNumber),        \
    "object name, angle", "As \"SCR:RotateObjectAboutY\", and the object's light turns with it.") \
  M(kSetVelocityOnBody, "SCR:SetVelocityOnBody", (Text, ScriptNumber, ScriptNumber, ScriptNumber), \
    "object name, x, y, z", "Sent on as \"msgSetBodyVelocity\".")                                 \
  M(kSetVelocityXZOnBody, "SCR:SetVelocityXZOnBody", (Text, ScriptNumber, ScriptNumber),          \
    "object name, x, z", "Sent on as \"msgSetBodyVelocityXZ\".")                                  \
  M(kSetRelativeVelocityOnBody, "SCR:SetRelativeVelocityOnBody",                                  \
    (Text, ScriptNumber, ScriptNumber, ScriptNumber), "object name, x, y, z",                     \
    "Prints the impulse and sends it on as \"msgAddImpulse\".")                                   \
  M(kSetObjectColor, "SCR:SetObjectColor", (Text, ScriptNumber, ScriptNumber, ScriptNumber),      \
    "object name, r, g, b", "Writes the object's material colour.")                               \
  M(kSetBodySpeed, "SCR:SetBodySpeed", (Text, ScriptNumber), "object name, speed",         \
    "Sent on as \"SetBodySpeed\".")                                                               \
  M(kSetControllerVibration, "SCR:SetControllerVibration", (ScriptNumber, ScriptNumber, ScriptNumber), \
    "pad, left, right", "Sent on as \"msgSetControllerVibration\".")                              \
  M(kCreateObject, "SCR:CreateObject", (Text, Text), "archetype, name",                           \
    "Copies the archetype into the current level and announces it.")                              \
  M(kDestroyObject, "SCR:DestroyObject", (Text), "name", "Announces the object's destruction.")   \
  M(kSetCountdown, "SCR:SetCountdown", (ScriptNumber, ScriptNumber), "slot, seconds",             \
    "Starts one of the eight countdowns.")                                                        \
  M(kTrackDate, "SCR:TrackDate", (ScriptNumber), "on", "Whether the date is written each frame.") \
  M(kRestartParticles, "SCR:RestartParticles", (Text), "object name",                              \
    "Heard by the renderer: the object's particle system starts over (an explosion bursts again).")
