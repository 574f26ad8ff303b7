#pragma once

#include <cstdio>
#include <cstdlib>

// What holds for every input of a target, also where nothing crashes. Where it does not hold the
// program is aborted, which is a finding to the fuzzer and a failure to the run over the corpus.
#define REQUIRE(condition)                                                                                             \
    do {                                                                                                               \
        if (!(condition)) {                                                                                            \
            static_cast<void>(std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition));     \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)
