// Catalogue: the messages that the physics, graphics, audio and input systems answer or send.
// Entry format as in CoreMessages.h. Device copies are the input system's own records.
#pragma once

#define GRINDLE_PHYSICS_MESSAGES(M)                                                         \
  M(kRemoveRotationalVelocity, "msgRemoveRotationalVelocity", (Text), "object name",        \
    "Stops the body turning.")                                                              \
  M(kSetBodyVelocity, "msgSetBodyVelocity", (Object, Real, Real, Real), "object, x, y, z",  \
    "Wakes the body and replaces its linear velocity.")                                     \
  M(kSetBodyVelocityXZ, "msgSetBodyVelocityXZ", (Object, Real, Real), "object, x, z",       \
    "As \"msgSetBodyVelocity\", keeping the vertical velocity.")                            \
  M(kAddImpulse, "msgAddImpulse", (Object, Real, Real, Real), "object, x, y, z",            \
    "Replaces the velocity, like \"msgSetBodyVelocity\" (kept: the game relies on it).")    \
  M(kSetBodyRotation, "msgSetBodyRotation", (Object, Real, Real, Real, Real),               \
    "object, axis x, axis y, axis z, angle", "Turns the body to the angle about the axis.") \
  M(kCollisionBegin, "CollisionBegin", (Text, Text), "object name, object name",            \
    "Two bodies started touching.")                                                         \
  M(kCollisionEnd, "CollisionEnd", (Text, Text), "object name, object name",                \
    "Two bodies stopped touching.")

#define GRINDLE_GRAPHICS_MESSAGES(M)                                                               \
  M(kLoadShaders, "LoadShaders", (), "", "Loads the scene effects and their input layouts.")       \
  M(kLoadRemainingShaders, "LoadRemainingShaders", (), "", "Loads the scene effects.")             \
  M(kFullScreen, "FullScreenMSG", (), "", "Toggles full screen.")                                  \
  M(kChangeResolution, "ChangeResolution", (Text), "\"WIDTHxHEIGHT\"", "Changes the resolution.")  \
  M(kSetWorldObjectAlpha, "msgSetWorldObjectAlpha", (Text, Real), "object name, alpha",            \
    "Sets the alpha of the object's world sprite.")                                                \
  M(kSetObjectAlpha, "SetObjectAlpha", (Text, Real), "object name, alpha",                         \
    "Sets the alpha of the object's HUD sprite.")                                                  \
  M(kSetSpriteWorldObjectAlpha, "SetSpriteWorldObjectAlpha", (Text, Real), "object name, alpha",   \
    "Sets the alpha of the object's world sprite.")                                                \
  M(kSetWorldObjectColor, "SetWorldObjectColor", (Text, Real, Real, Real), "object name, r, g, b", \
    "Sets the colour of the object's world sprite.")                                               \
  M(kSetHUDObjectColor, "SetHUDObjectColor", (Text, Real, Real, Real), "object name, r, g, b",     \
    "Sets the colour of the object's HUD sprite.")                                                 \
  M(kScreenshot, "msgScreenshot", (Text), "file", "Writes the last frame to the file.")            \
  M(kSetPostProcessing, "msgSetPostProcessing", (Text), "effect names",                            \
    "Sets the post-processing chain's order.")                                                     \
  M(kSetDebugDraw, "msgSetDebugDraw", (Real), "on", "Turns the debug drawing on (non-zero) or off.")

#define GRINDLE_AUDIO_MESSAGES(M)                                                                 \
  M(kPlaySong, "PlaySong", (Real, Text), "loop, song",                                            \
    "Starts a song unless it plays already; the name may also come first, and a scale third.")    \
  M(kStopSong, "StopSong", (), "", "Stops the music.")                                            \
  M(kStopAllSounds, "StopAllSounds", (), "", "Stops every sound effect.")                         \
  M(kPlaySound, "PlaySound", (Text, Real, Real, Real), "sound, restart, scale, loop",             \
    "Plays a sound effect; the numbers are optional.")                                            \
  M(kPlaySoundAt, "PlaySoundAt", (Text, Real, Real, Real, Real), "sound, x, y, z, scale",         \
    "Plays a sound effect at a world point; the scale is optional.")                              \
  M(kStopSound, "StopSound", (Text), "sound", "Stops the latest play of each variant.")           \
  M(kPlayVO, "PlayVO", (Text, Real), "line, scale",                                               \
    "Plays a voice-over line; the scale is optional.")                                            \
  M(kStopVO, "StopVO", (), "", "Stops the voice-over line.")                                      \
  M(kToggleSoundsMute, "ToggleSoundsMuteMSG", (), "", "Mutes or unmutes effects and voice-over.") \
  M(kToggleMusicMute, "ToggleMusicMuteMSG", (), "", "Mutes or unmutes the music.")                \
  M(kUpdate3DSoundListener, "Update3DSoundListener", (Real, Real, Real, Real, Real, Real),        \
    "eye x, y, z, look x, y, z", "Places the listener (the renderer sends it every frame).")      \
  M(kCurrentVOStarted, "CurrentVOStarted", (), "", "A voice-over line started.")                  \
  M(kCurrentVOFinished, "CurrentVOFinished", (), "", "The voice-over line ended or was stopped.")

#define GRINDLE_INPUT_MESSAGES(M)                                                         \
  M(kKeyboard, "Keyboard", (Payload<Keyboard>), "Keyboard",                               \
    "The keyboard changed or a key is held (a copy of the input system's Keyboard).")     \
  M(kMouse, "Mouse", (Payload<Mouse>), "Mouse",                                           \
    "Every frame: a copy of the input system's Mouse.")                                   \
  M(kXboxController, "XboxController", (Payload<XboxControllerHub>), "XboxControllerHub", \
    "A pad is connected: a copy of the input system's XboxControllerHub.")                \
  M(kSetControllerVibration, "msgSetControllerVibration", (Integer, Real, Real),          \
    "pad, left, right", "Sets a pad's motor strengths (0..1).")
