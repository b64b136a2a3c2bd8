// The receive cycle on a scripted line, and the comparison with the plain reading.
#include "ReceiveDifferential.h"

#include "FuzzInput.h"
#include "instrument/ReceiveMachine.h"

#include <deque>
#include <span>

namespace zorvik::fuzz {

namespace {

CycleKind kindOf(ReceiveEvent event) {
    switch (event) {
    case ReceiveEvent::Held:
        return CycleKind::Held;
    case ReceiveEvent::Waiting:
        return CycleKind::Waiting;
    case ReceiveEvent::Hunt:
        return CycleKind::Hunt;
    case ReceiveEvent::SyncFound:
        return CycleKind::Sync;
    case ReceiveEvent::Frame:
        return CycleKind::Frame;
    case ReceiveEvent::Rejected:
        return CycleKind::Rejected;
    case ReceiveEvent::Short:
        return CycleKind::Short;
    case ReceiveEvent::Redraw:
        return CycleKind::Redraw;
    case ReceiveEvent::TimedOut:
        return CycleKind::TimedOut;
    case ReceiveEvent::Ignored:
        break;
    }
    fail("the receive cycle ignored bytes that completed the read it had asked for");
}

} // namespace

std::vector<CycleRecord> runReceiveMachine(const LineScript& script) {
    ReceiveMachine machine;
    machine.blnAcquire = true;
    machine.arm();
    std::deque<std::uint8_t> buffer;
    std::vector<CycleRecord> out;

    auto record = [&](const ReceiveStep& step) {
        CycleRecord r;
        r.kind = kindOf(step.event);
        r.pointer = step.pointer1.value_or(-1);
        r.disablePrint = step.disablePrint;
        r.resetInput = step.resetInput;
        r.show = step.show;
        r.nextCount = step.next.count;
        r.nextTimed = step.next.timed;
        r.state = machine.state();
        r.samples = machine.bytRawData();
        check(step.next == machine.pending(), "the step's next read is not the pending read");
        out.push_back(r);
        if (step.resetInput)
            buffer.clear();
    };
    auto complete = [&](std::size_t count) {
        std::vector<std::uint8_t> bytes(buffer.begin(),
                                        buffer.begin() + static_cast<std::ptrdiff_t>(count));
        buffer.erase(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
        record(machine.onData(std::span<const std::uint8_t>(bytes)));
    };

    std::size_t offset = 0;
    for (std::size_t i = 0; i < script.chunks.size(); ++i) {
        switch (script.actions[i]) {
        case LineAction::None:
            break;
        case LineAction::ClearAcquire:
            machine.blnAcquire = false;
            break;
        case LineAction::Hold:
            machine.blnAcquire = false;
            machine.stop();
            break;
        case LineAction::Resume:
            machine.blnAcquire = true;
            buffer.clear();
            machine.arm();
            break;
        }
        const auto first = script.bytes.begin() + static_cast<std::ptrdiff_t>(offset);
        buffer.insert(buffer.end(), first, first + static_cast<std::ptrdiff_t>(script.chunks[i]));
        offset += script.chunks[i];
        while (machine.pending().count > 0 &&
               buffer.size() >= static_cast<std::size_t>(machine.pending().count))
            complete(static_cast<std::size_t>(machine.pending().count));
    }
    if (machine.pending().count > 0) {
        if (script.ending == StreamEnding::Partial) {
            complete(buffer.size());
        } else if (script.ending == StreamEnding::TimeOut && machine.pending().timed) {
            record(machine.onTimeout());
        }
    }
    return out;
}

LineScript lineScriptFromFuzzInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput in(data, size);
    const std::uint8_t flags = in.byte();
    const std::uint16_t seed = in.u16();
    const std::string stream = in.rest();

    LineScript script;
    script.bytes.assign(stream.begin(), stream.end());
    script.ending = static_cast<StreamEnding>(flags % 3);
    const std::size_t actionRate = (flags >> 2) & 0x0F; // out of 64 chunks
    const int cut = flags >> 6;

    SplitMix random(seed);
    std::size_t left = script.bytes.size();
    while (left > 0) {
        std::size_t n = 1;
        switch (cut) {
        case 0:
            n = random.below(8) == 0 ? 1 + random.below(300) : 1 + random.below(8);
            break;
        case 1:
            n = 1 + random.below(300);
            break;
        case 2:
            n = left;
            break;
        default:
            n = 1;
            break;
        }
        n = n < left ? n : left;
        script.chunks.push_back(n);
        LineAction action = LineAction::None;
        if (actionRate > 0 && random.below(64) < actionRate)
            action = static_cast<LineAction>(1 + random.below(3));
        script.actions.push_back(action);
        left -= n;
    }
    return script;
}

std::optional<std::string> firstDifference(const std::vector<CycleRecord>& program,
                                           const std::vector<CycleRecord>& reference) {
    const std::size_t common =
        program.size() < reference.size() ? program.size() : reference.size();
    for (std::size_t i = 0; i < common; ++i) {
        if (!(program[i] == reference[i])) {
            return "decision " + std::to_string(i) +
                   " differs\n  program:   " + describe(program[i]) +
                   "\n  reference: " + describe(reference[i]);
        }
    }
    if (program.size() != reference.size()) {
        const bool programLonger = program.size() > reference.size();
        const CycleRecord& extra = programLonger ? program[common] : reference[common];
        return std::string(programLonger ? "the program" : "the reference") +
               " takes more decisions (" + std::to_string(program.size()) + " against " +
               std::to_string(reference.size()) + "); the first extra one: " + describe(extra);
    }
    return std::nullopt;
}

} // namespace zorvik::fuzz
