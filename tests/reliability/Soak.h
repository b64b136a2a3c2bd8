// Long (soak) runs of the reliability tests: ZORVIK_SOAK=1 in the environment makes them run
// for minutes with the figures recorded in docs/RELIABILITY.md; under CTest they take seconds.
#pragma once

#include <cstdlib>

namespace zorvik::test {

inline bool soakRun() {
    const char* soak = std::getenv("ZORVIK_SOAK");
    return soak && *soak && *soak != '0';
}

} // namespace zorvik::test
