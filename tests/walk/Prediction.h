#pragma once

#include <cstdint>

#include "Coverage.h"
#include "Session.h"
#include "Table.h"
#include "Words.h"

namespace walk {

// Walks the tables, from the console's entry to its end, with words as they are asked for, and
// predicts everything that is to be seen. Knows nothing of the console but the tables.
Session predict(std::uint64_t seed, Words& words, Coverage& coverage);

// The counts of all rows of all tables.
Coverage everyRow();

} // namespace walk
