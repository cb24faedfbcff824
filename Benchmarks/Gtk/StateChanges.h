#pragma once

namespace tavo::benchmark {

enum class Evaluation { together, oneByOne };

// Microseconds for the statements that tell a page one change of its state, over many changes in a
// row, each in a turn of its own.
[[nodiscard]] double stateChanges(Evaluation evaluation);

// The floor of the first: one bare evaluation of the same text.
[[nodiscard]] double bareEvaluation();

}  // namespace tavo::benchmark
