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
    explicit AcquisitionFeed(QObject* parent = nullptr) : QObject(parent) {}

    /// Hands on every frame `link` decodes as `frameDecoded`.
    void listenTo(const InstrumentLink& link) {
        connect(&link, &InstrumentLink::frameDecoded, this, &AcquisitionFeed::frameDecoded);
    }
    /// The displayed acquisition changed (a frame shown, a knob turned, a file loaded, the
    /// reference stored): tells every subscriber.
    void announce(const zorvik::DisplayModel& model) { emit acquisitionChanged(model); }

signals:
    /// A frame (or the present record again) is to be shown; the main window shows it.
    void frameDecoded(const zorvik::DecodedFrame& frame);
    /// The traces on screen were drawn anew from `model`.
    void acquisitionChanged(const zorvik::DisplayModel& model);
};

} // namespace zorvik
