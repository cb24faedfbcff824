#pragma once

#include <memory>

#include <tavo/ViewController.h>

namespace tavo {

// Dismisses a sheet through whoever presents it; nothing when nobody does.
void dismissSheet(const std::weak_ptr<ViewController>& sheet, Animated animated);

}  // namespace tavo
