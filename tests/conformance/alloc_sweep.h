// Allocation-failure sweep of the golden-vector runner (built into kxbase_conformance_sweep).
//
// Every vector that passes normally is run again with the n-th allocation inside the library
// failing, for n = 0, 1, 2, ... until a run completes without reaching the failure. Each run
// must end in what the operation promises for exhausted memory: either the result it gives
// with enough memory, or its reported failure (a 0/false/null result, or empty outputs). An
// escaping std::bad_alloc is allowed only for the operations listed in alloc_propagates.txt.
#pragma once

#include <string>

#include "conformance.h"

namespace conf::sweep {

/// Reads the table of operations that let a memory exception through ("fn | why" lines).
void load_propagates(const std::string& file);

/// Makes report() fail unless every bound operation was swept, or is listed in `file` ("fn |
/// why" lines: bound operations that no vector reaches, with the reason) or in the table of
/// load_propagates. An entry of `file` that is swept after all, or names no bound operation,
/// fails too, so that the list cannot go stale.
void require_all_swept(const std::string& file);

/// Sweeps one vector whose normal run gave `baseline`. Returns an empty string when every run
/// was acceptable, else what went wrong (the first bad run).
std::string vector(const json& v, const json& baseline);

/// Prints the figures of the whole sweep (operations, vectors, allocation points) and lists
/// the table's entries that no swept vector exercised. False when no allocation was failed at
/// all, which means the hook is not in effect, or when require_all_swept finds a gap.
bool report();

}  // namespace conf::sweep
