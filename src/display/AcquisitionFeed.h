// The one place where whatever uses the trace subscribes: a frame was decoded, the displayed
// acquisition changed. The main window's display chain is the first subscriber; a window that
// measures, analyses or records the trace connects here too, and the receive handler never
// learns of it.
#pragma once

#include "display/DisplayModel.h"
#include "instrument/InstrumentLink.h"

#include <QObject>

namespace zorvik {

class AcquisitionFeed : public QObject {
    Q_OBJECT
public:
    explicit AcquisitionFeed(QObject* parent = nullptr) : QObject(parent) {
        // First of all subscribers: the frame goes on to the display unless it is held.
        connect(this, &AcquisitionFeed::frameDecoded, this, [this](const DecodedFrame& frame) {
            if (held_)
                return;
            showingFrame_ = true;
            emit frameToShow(frame);
            showingFrame_ = false;
        });
    }

    /// Hands on every frame `link` decodes as `frameDecoded`.
    void listenTo(const InstrumentLink& link) {
        connect(&link, &InstrumentLink::frameDecoded, this, &AcquisitionFeed::frameDecoded);
    }
    /// The displayed acquisition changed (a frame shown, a knob turned, a file loaded, the
    /// reference stored): tells every subscriber.
    void announce(const zorvik::DisplayModel& model) { emit acquisitionChanged(model); }

    /// Holds the display on the frame it shows: frames are still taken in and handed on as
    /// `frameDecoded` (to recordings and measurements), but none goes on to the display until
    /// the hold is released. The receive cycle itself never stops.
    void setHeld(bool held) {
        if (held_ != held) {
            held_ = held;
            emit heldChanged(held);
        }
    }
    bool held() const { return held_; }
    /// True while a frame is on its way to the display: an `acquisitionChanged` then is that
    /// frame's, and a subscriber that also takes `frameDecoded` can leave it to that.
    bool showingFrame() const { return showingFrame_; }

signals:
    /// A frame (or the present record again) was taken in.
    void frameDecoded(const zorvik::DecodedFrame& frame);
    /// The same frame, to be shown: the main window's display chain shows it (none while the
    /// display is held).
    void frameToShow(const zorvik::DecodedFrame& frame);
    void heldChanged(bool held);
    /// The traces on screen were drawn anew from `model`.
    void acquisitionChanged(const zorvik::DisplayModel& model);

private:
    bool held_ = false;
    bool showingFrame_ = false;
};

} // namespace zorvik
