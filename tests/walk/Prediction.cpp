#include "Prediction.h"

#include "Interpreter.h"
#include "Tables.h"

namespace walk {

Session predict(std::uint64_t seed, Words& words, Coverage& coverage) {
    return Interpreter(seed, tables::signalLine(), words, coverage).run(tables::processMenu());
}

Coverage everyRow() {
    return Coverage({tables::processMenu, tables::signalLine});
}

} // namespace walk
