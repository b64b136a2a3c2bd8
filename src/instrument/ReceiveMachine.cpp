// The receive cycle: two-byte probes, the four sync cases, the read of the frame's rest.
#include "instrument/ReceiveMachine.h"

#include <algorithm>

namespace zorvik {

namespace {
constexpr ReadRequest kProbeRead{2, false};
constexpr ReadRequest kRest137{137, true};
constexpr ReadRequest kRest139{139, true};
} // namespace

ReadRequest ReceiveMachine::arm() {
    expect_ = Expect::Probe;
    pending_ = kProbeRead;
    return pending_;
}

void ReceiveMachine::stop() {
    expect_ = Expect::Nothing;
    pending_ = {};
}

ReceiveStep ReceiveMachine::onData(std::span<const std::uint8_t> bytes) {
    Value_.assign(bytes.begin(), bytes.end());
    switch (expect_) {
    case Expect::Probe:
        return onProbe();
    case Expect::Rest137:
        return onRest(false);
    case Expect::Rest139:
        return onRest(true);
    case Expect::Nothing:
        break;
    }
    return ReceiveStep{};
}

ReceiveStep ReceiveMachine::onTimeout() {
    if (expect_ != Expect::Rest137 && expect_ != Expect::Rest139)
        return ReceiveStep{};
    stop();
    ReceiveStep step;
    step.event = ReceiveEvent::TimedOut;
    return step;
}

ReceiveStep ReceiveMachine::onProbe() {
    ReceiveStep step;
    if (!blnAcquire) {
        // Held: nothing is drawn and no read is armed; whoever holds re-arms.
        stop();
        step.event = ReceiveEvent::Held;
        return step;
    }
    step.disablePrint = true;
    if (Value_.size() != 2) {
        // Not a two-byte probe: the present record is shown again and the cycle goes on.
        step.event = ReceiveEvent::Redraw;
        step.show = true;
        record_.kind = ReceiveEvent::Redraw;
        step.next = arm();
        return step;
    }
    const std::uint8_t b0 = Value_[0];
    const std::uint8_t b1 = Value_[1];
    if (b0 == kSyncByte && b1 == kSyncByte) {
        step.event = ReceiveEvent::Waiting;
        step.pointer1 = kPointerWaiting;
        step.resetInput = true;
        step.next = arm();
    } else if (b0 == kSyncByte) {
        // b1 is the first field of the frame; it is stored with the rest once that arrived.
        syncField_ = b1;
        step.event = ReceiveEvent::SyncFound;
        step.pointer1 = kPointerTriggered;
        expect_ = Expect::Rest137;
        pending_ = kRest137;
        step.next = pending_;
    } else if (b1 != kSyncByte) {
        step.event = ReceiveEvent::Hunt;
        step.pointer1 = kPointerWaiting;
        step.next = arm();
    } else {
        step.event = ReceiveEvent::SyncFound;
        step.pointer1 = kPointerTriggered;
        expect_ = Expect::Rest139;
        pending_ = kRest139;
        step.next = pending_;
    }
    return step;
}

ReceiveStep ReceiveMachine::onRest(bool syncInPlace1) {
    ReceiveStep step;
    const auto& r = Value_;
    // A byte the read did not bring leaves its field as it was (the store is skipped).
    auto store = [&r](std::uint8_t& field, std::size_t index) {
        if (index < r.size())
            field = r[index];
    };
    bool isShort = false;
    if (!syncInPlace1) {
        record_.state.bytSwitchSetting = syncField_;
        store(record_.state.bytTimebaseDef, 0);
        store(record_.state.bytTriggerDef, 1);
        store(record_.state.bytTriggerLvl, 2);
        store(record_.state.bytDVM100, 132);
        store(record_.state.bytDVM10, 133);
        store(record_.state.bytDVM1, 134);
        store(record_.state.bytDVMflags, 135);
        isShort = !copySamples(3, 130);
    } else {
        // The state bytes are stored before the frame is checked; a rejected frame keeps
        // them. This order is deliberate.
        store(record_.state.bytSwitchSetting, 1);
        store(record_.state.bytTimebaseDef, 2);
        store(record_.state.bytTriggerDef, 3);
        store(record_.state.bytTriggerLvl, 4);
        store(record_.state.bytDVM100, 134);
        store(record_.state.bytDVM10, 135);
        store(record_.state.bytDVM1, 136);
        store(record_.state.bytDVMflags, 137);
        const bool valid = r.size() >= 2 && r[0] == kSyncByte && r[1] != kSyncByte;
        if (!valid) {
            step.event = ReceiveEvent::Rejected;
            step.next = arm();
            return step;
        }
        isShort = !copySamples(5, 132);
    }
    step.event = isShort ? ReceiveEvent::Short : ReceiveEvent::Frame;
    step.show = !isShort;
    if (step.show)
        record_.kind = ReceiveEvent::Frame;
    step.next = arm();
    return step;
}

bool ReceiveMachine::copySamples(int first, int last) {
    // Samples are copied from r[first] on, one slot after the other, until the 128th or the
    // guard: an index above (highest index - 2) marks the frame short, keeping the samples
    // copied before it. The samples are copied as one block, which is what makes the receive
    // cycle cheap per frame.
    const int highest = static_cast<int>(Value_.size()) - 1;
    const int wanted = std::min(last - first + 1, static_cast<int>(kSamplesPerFrame));
    const int available = std::clamp(highest - 2 - first + 1, 0, wanted);
    if (available > 0)
        std::copy_n(Value_.begin() + first, available, record_.bytRawData.begin());
    intFrameIndex_ = 1 + available;
    return available == wanted;
}

} // namespace zorvik
