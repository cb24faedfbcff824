// Prints the web engine's user agent. A host that shows no page yet runs this instead of mapping
// the engine into its own memory.

#include <webkit/webkit.h>

#include <cstdio>
#include <cstdlib>

int main() {
  // It draws nothing: setting the graphics up would take longer than all the rest.
  g_setenv("GDK_DEBUG", "gl-disable,vulkan-disable", TRUE);
  // The engine's settings ask the display what it can draw.
  if (gtk_init_check() == FALSE) return 1;
  WebKitSettings* settings = webkit_settings_new();
  const char* text = webkit_settings_get_user_agent(settings);
  if (text == nullptr) return 1;
  std::puts(text);
  std::fflush(stdout);
  // Taking a hundred libraries down again is nobody's gain.
  std::_Exit(0);
}
