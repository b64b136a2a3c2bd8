// The plain reading of the frame rules: a cursor over the whole stream, one loop.
#include "NaiveFrameDecoder.h"

#include <algorithm>
#include <sstream>

namespace zorvik::fuzz {

namespace {

constexpr std::uint8_t kSync = 0x7D;

const char* kindName(CycleKind kind) {
    switch (kind) {
    case CycleKind::Held:
        return "held";
    case CycleKind::Waiting:
        return "waiting";
    case CycleKind::Hunt:
        return "hunt";
    case CycleKind::Sync:
        return "sync";
    case CycleKind::Frame:
        return "frame";
    case CycleKind::Rejected:
        return "rejected";
    case CycleKind::Short:
        return "short";
    case CycleKind::Redraw:
        return "redraw";
    case CycleKind::TimedOut:
        return "timed out";
    }
    return "?";
}

} // namespace

std::string describe(const CycleRecord& r) {
    std::ostringstream out;
    out << kindName(r.kind) << " pointer=" << r.pointer << " disablePrint=" << r.disablePrint
        << " reset=" << r.resetInput << " show=" << r.show << " next=" << r.nextCount
        << (r.nextTimed ? " timed" : "") << " state=";
    const HardwareState& s = r.state;
    for (const int b : {s.bytSwitchSetting, s.bytTimebaseDef, s.bytTriggerDef, s.bytTriggerLvl,
                        s.bytDVM100, s.bytDVM10, s.bytDVM1, s.bytDVMflags})
        out << b << ' ';
    out << "samples=";
    for (const int b : r.samples)
        out << b << ',';
    return out.str();
}

std::vector<CycleRecord> naiveDecode(const LineScript& script) {
    std::vector<CycleRecord> out;
    HardwareState state;
    RawSamples raw{};
    bool acquire = true;
    // What the cycle waits for: 2 (a probe), 137 or 139 (a frame's rest), 0 (nothing).
    int want = 2;
    std::uint8_t firstField = 0;

    std::size_t pos = 0;     // next byte the cycle reads
    std::size_t arrived = 0; // bytes the line has delivered so far
    std::size_t chunk = 0;

    auto note = [&](CycleKind kind, int pointer, bool disablePrint, bool reset, bool show) {
        CycleRecord r;
        r.kind = kind;
        r.pointer = pointer;
        r.disablePrint = disablePrint;
        r.resetInput = reset;
        r.show = show;
        r.nextCount = want;
        r.nextTimed = want > 2;
        r.state = state;
        r.samples = raw;
        out.push_back(r);
    };

    // One completed read: `n` bytes at `r` (fewer than asked for only at the stream's end).
    auto decide = [&](const std::uint8_t* r, std::size_t n) {
        const auto has = [n](std::size_t i) { return i < n; };
        if (want == 2) {
            if (!acquire) {
                want = 0;
                note(CycleKind::Held, -1, false, false, false);
            } else if (n != 2) {
                note(CycleKind::Redraw, -1, true, false, true);
            } else if (r[0] == kSync && r[1] == kSync) {
                pos = arrived; // the port's input is discarded
                note(CycleKind::Waiting, 300, true, true, false);
            } else if (r[0] == kSync) {
                firstField = r[1];
                want = 137;
                note(CycleKind::Sync, 0, true, false, false);
            } else if (r[1] != kSync) {
                note(CycleKind::Hunt, 300, true, false, false);
            } else {
                want = 139;
                note(CycleKind::Sync, 0, true, false, false);
            }
            return;
        }
        if (want == 137) {
            // r holds frame bytes 2..138: fields, 128 samples from r[3], reserved, DVM.
            state.bytSwitchSetting = firstField;
            if (has(0))
                state.bytTimebaseDef = r[0];
            if (has(1))
                state.bytTriggerDef = r[1];
            if (has(2))
                state.bytTriggerLvl = r[2];
            if (has(132))
                state.bytDVM100 = r[132];
            if (has(133))
                state.bytDVM10 = r[133];
            if (has(134))
                state.bytDVM1 = r[134];
            if (has(135))
                state.bytDVMflags = r[135];
            // The copy may go only as far as two bytes before the end of what came.
            const std::size_t copied = n > 5 ? std::min<std::size_t>(n - 5, 128) : 0;
            for (std::size_t i = 0; i < copied; ++i)
                raw[i] = r[3 + i];
            const bool isShort = n < 133;
            want = 2;
            note(isShort ? CycleKind::Short : CycleKind::Frame, -1, false, false, !isShort);
            return;
        }
        // want == 139: a whole frame from r[0]; the fields are kept even when it is rejected.
        if (has(1))
            state.bytSwitchSetting = r[1];
        if (has(2))
            state.bytTimebaseDef = r[2];
        if (has(3))
            state.bytTriggerDef = r[3];
        if (has(4))
            state.bytTriggerLvl = r[4];
        if (has(134))
            state.bytDVM100 = r[134];
        if (has(135))
            state.bytDVM10 = r[135];
        if (has(136))
            state.bytDVM1 = r[136];
        if (has(137))
            state.bytDVMflags = r[137];
        want = 2;
        if (n < 2 || r[0] != kSync || r[1] == kSync) {
            note(CycleKind::Rejected, -1, false, false, false);
            return;
        }
        const std::size_t copied = n > 7 ? std::min<std::size_t>(n - 7, 128) : 0;
        for (std::size_t i = 0; i < copied; ++i)
            raw[i] = r[5 + i];
        const bool isShort = n < 135;
        note(isShort ? CycleKind::Short : CycleKind::Frame, -1, false, false, !isShort);
    };

    for (;;) {
        const auto needed = static_cast<std::size_t>(want);
        if (needed > 0 && arrived - pos >= needed) {
            const std::uint8_t* at = script.bytes.data() + pos;
            pos += needed;
            decide(at, needed);
            continue;
        }
        if (chunk < script.chunks.size()) {
            switch (script.actions[chunk]) {
            case LineAction::None:
                break;
            case LineAction::ClearAcquire:
                acquire = false;
                break;
            case LineAction::Hold:
                acquire = false;
                want = 0;
                break;
            case LineAction::Resume:
                acquire = true;
                pos = arrived;
                want = 2;
                break;
            }
            arrived += script.chunks[chunk++];
            continue;
        }
        // The line has nothing more.
        if (needed == 0)
            break;
        if (script.ending == StreamEnding::Partial) {
            const std::uint8_t* at = script.bytes.data() + pos;
            const std::size_t n = arrived - pos;
            pos = arrived;
            decide(at, n);
        } else if (script.ending == StreamEnding::TimeOut && needed > 2) {
            want = 0;
            note(CycleKind::TimedOut, -1, false, false, false);
        }
        break;
    }
    return out;
}

} // namespace zorvik::fuzz
