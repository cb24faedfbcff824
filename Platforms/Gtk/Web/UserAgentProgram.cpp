// Prints the web engine's user agent. A host that shows no page yet runs this instead of mapping
// the engine into its own memory.

#include <webkit/webkit.h>

#include <cstdio>

int main() {
  // The engine's settings ask the display what it can draw.
  if (gtk_init_check() == FALSE) return 1;
  WebKitSettings* settings = webkit_settings_new();
  const char* text = webkit_settings_get_user_agent(settings);
  if (text == nullptr) return 1;
  std::puts(text);
  g_object_unref(settings);
  return 0;
}
