// A host that links the whole library and has shown no HTML ad.
#include <tavo/Runtime.h>
#include <tavo/XAdView.h>
#include <tavo/gtk/AdSlot.h>
#include <tavo/gtk/GtkPlatform.h>

#include "StartedProgram.h"

int main(int argc, char** /*argv*/) {
  tavo::benchmark::reportStart();
  if (argc < 2) return 0;
  // Never reached by the benchmark; it keeps all that a host needs in the program.
  tavo::Runtime runtime{tavo::gtk::makePlatform({.applicationId = "com.example.started"})};
  const tavo::gtk::AdSlot slot{tavo::XAdView::create({0, 0, 320, 50})};
  return 0;
}
