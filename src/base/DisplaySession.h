#pragma once

// Which kind of desktop session the program runs in. On Wayland no client
// sees another's pixels or keys: the screen comes through the desktop portal
// and there is no global key grab, even for a client drawn through XWayland.
namespace DisplaySession {

// True in a Wayland session: WAYLAND_DISPLAY set, XDG_SESSION_TYPE
// "wayland", or Qt asked for its Wayland platform.
bool isWayland();

} // namespace DisplaySession
