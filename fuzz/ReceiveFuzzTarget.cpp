// Fuzz target: the receive cycle on random byte streams cut into random chunks, with the
// window holding and resuming between chunks. It must take exactly the decisions of the
// plain reading of the frame rules: the same frames with the same bytes, the same state
// records (also those kept from a rejected or short frame), the same reads armed.
#include "FuzzInput.h"
#include "ReceiveDifferential.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zorvik::fuzz;
    const LineScript script = lineScriptFromFuzzInput(data, size);
    const auto difference = firstDifference(runReceiveMachine(script), naiveDecode(script));
    if (difference)
        fail("the receive cycle and the frame rules disagree", *difference);
    return 0;
}
