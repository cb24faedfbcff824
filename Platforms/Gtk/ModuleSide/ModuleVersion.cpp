// Linked into every module: a host that was started before the library was updated must not take a
// module that was built for the new one.
extern "C" __attribute__((visibility("default"))) const char* tavo_module_version() {
  return TAVO_MODULE_VERSION;
}
