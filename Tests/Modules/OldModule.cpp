// A module of another version of the library: it has the right name and the right entry.

extern "C" __attribute__((visibility("default"))) const char* tavo_module_version() {
  return "0.9.0";
}

extern "C" __attribute__((visibility("default"))) void* tavo_create_web_view_factory() {
  __builtin_trap();
}
