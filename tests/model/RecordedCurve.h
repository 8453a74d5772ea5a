#pragma once

#include "tests/support/SignalRecorder.h"

#include <QString>

/// A curve all of whose signals are recorded, its keys' ones before its own.
struct RecordedCurve {
    RecordedCurve() { recorder.watch(curve); }

    ZT::EditableMotionCurveKey* add(unsigned int frame, const QString& name) {
        ZT::EditableMotionCurveKey* const key = make(name);
        curve.insert(frame, key);
        recorder.take();
        return key;
    }

    ZT::EditableMotionCurveKey* make(const QString& name) {
        auto* const key = new ZT::EditableMotionCurveKey;
        recorder.watch(*key, name);
        return key;
    }

    ZT::EditableMotionCurve curve;
    SignalRecorder recorder;
};
