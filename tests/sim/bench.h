#pragma once

#include "eventtext.h"

#include <QByteArray>
#include <QStringList>

/// A wire's far end, and what its observer hears, in words.
template <class End>
struct Bench {
    template <class... Size>
    explicit Bench(Size... size)
        : end(size...,
              [this](const sim::WireEvent &event) { heard += QString::fromStdString(words.line(event)); })
    {
    }

    void feed(const QByteArray &bytes, qint64 nowUs = 0)
    {
        end.feed(reinterpret_cast<const quint8 *>(bytes.constData()), size_t(bytes.size()), nowUs);
    }

    sim::EventText words;
    QStringList heard;
    End end;
};
