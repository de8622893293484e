// Dark colours for desktops that want them and tell so by their settings portal only: Qt 6.4 does not listen
// there. (org.freedesktop.portal.Settings, key "color-scheme" of org.freedesktop.appearance; 1 prefers dark.)
#pragma once

namespace window {

// Asks once, on the application's thread, and waits for half a second at the most. Whoever has chosen dark
// colours by other means keeps them.
void Follow_Desktop_Colors();

} // namespace window
