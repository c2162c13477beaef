#pragma once

#include "eventtext.h"
#include "farend.h"
#include "fuzz.h"
#include "input.h"

/// What a far end tells, in words, and what it has sent by and by.
struct Told {
    sim::EventText words;
    std::string all;

    sim::WireObserver observer()
    {
        return [this](const sim::WireEvent &event) { all += words.line(event) + '\n'; };
    }
};

/// Feeds what came together in pieces of at most `most` bytes.
inline void feed(sim::FarEnd &end, const QByteArray &bytes, int most, qint64 nowUs)
{
    for (int at = 0; at < bytes.size(); at += most) {
        const QByteArray piece = bytes.mid(at, most);
        end.feed(reinterpret_cast<const quint8 *>(piece.constData()), std::size_t(piece.size()), nowUs);
    }
}

/// `told` is what comes of an input in pieces of at most so many bytes: however they are cut, the same.
template <class ToldOf>
void requireSameInPieces(const Input &input, ToldOf told)
{
    const std::string whole = told(input, 255);
    require(told(input, 1) == whole && told(input, 7) == whole);
}
