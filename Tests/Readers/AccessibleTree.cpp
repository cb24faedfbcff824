// Prints what assistive technology sees of the program with the number `argv[1]`, as a screen
// reader asks for it: one line a thing, deeper ones further in. With a second argument it first
// does what the thing of that name offers to do.
#include <atspi/atspi.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Of what a screen reader speaks of, and what holds others.
struct Thing {
  AtspiAccessible* accessible;
  std::string role;
  std::string name;
  int depth;
};

std::string taken(char* text) {
  const std::string copy = text == nullptr ? "" : text;
  g_free(text);
  return copy;
}

void collect(AtspiAccessible* from, int depth, std::vector<Thing>& things) {
  constexpr int deepest = 60;
  if (from == nullptr || depth > deepest) return;
  things.push_back({from, taken(atspi_accessible_get_role_name(from, nullptr)),
                    taken(atspi_accessible_get_name(from, nullptr)), depth});
  const int count = atspi_accessible_get_child_count(from, nullptr);
  for (int at = 0; at < count; ++at) {
    collect(atspi_accessible_get_child_at_index(from, at, nullptr), depth + 1, things);
  }
}

bool has(AtspiAccessible* thing, AtspiStateType state) {
  AtspiStateSet* states = atspi_accessible_get_state_set(thing);
  const bool holds = states != nullptr && atspi_state_set_contains(states, state) != FALSE;
  if (states != nullptr) g_object_unref(states);
  return holds;
}

AtspiAccessible* program(unsigned number) {
  AtspiAccessible* desktop = atspi_get_desktop(0);
  const int count = atspi_accessible_get_child_count(desktop, nullptr);
  for (int at = 0; at < count; ++at) {
    AtspiAccessible* child = atspi_accessible_get_child_at_index(desktop, at, nullptr);
    if (child != nullptr && atspi_accessible_get_process_id(child, nullptr) == number) return child;
  }
  return nullptr;
}

bool act(const std::vector<Thing>& things, std::string_view name) {
  for (const auto& thing : things) {
    AtspiAction* action =
        thing.name == name ? atspi_accessible_get_action_iface(thing.accessible) : nullptr;
    if (action != nullptr && atspi_action_do_action(action, 0, nullptr) != FALSE) return true;
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || atspi_init() > 1) return EXIT_FAILURE;
  std::vector<Thing> things;
  collect(program(static_cast<unsigned>(std::strtoul(argv[1], nullptr, 10))), 0, things);
  if (argc > 2 && !act(things, argv[2])) return EXIT_FAILURE;
  for (const auto& [thing, role, name, depth] : things) {
    if (!has(thing, ATSPI_STATE_VISIBLE)) continue;
    std::printf("%*s%s \"%s\"%s%s\n", depth, "", role.c_str(), name.c_str(),
                has(thing, ATSPI_STATE_SENSITIVE) ? "" : " off",
                has(thing, ATSPI_STATE_FOCUSED) ? " focused" : "");
  }
  return EXIT_SUCCESS;
}
