#pragma once

#include "Services/Protocols.h"

#include <functional>
#include <mutex>
#include <vector>

namespace kestrova {

using namespace Qt::StringLiterals;

/// Substitute services: each does what its member says, on the calling thread.
struct SubstituteCapture final : AudioCapturing
{
    bool isRecording() const override { return isOpen; }
    void startRecording() override
    {
        ++starts;
        if (whenStarted)
            whenStarted();
        isOpen = true;
    }
    AudioRecording stopRecording() override
    {
        ++stops;
        if (whenStopped)
            whenStopped();
        isOpen = false;
        return recording;
    }

    bool isOpen = false;
    int starts = 0;
    int stops = 0;
    std::function<void()> whenStarted;
    std::function<void()> whenStopped;
    AudioRecording recording{QUrl::fromLocalFile(u"/r.wav"_s), 2.5};
};

struct SubstituteTranscriber final : Transcribing
{
    TranscriptionResult transcribe(const QUrl &audioURL, const QUrl &modelURL,
                                   const std::stop_token &) override
    {
        audio = audioURL;
        model = modelURL;
        if (whenAsked)
            whenAsked();
        return {text, 12};
    }

    QString text = u"Hello world"_s;
    QUrl audio;
    QUrl model;
    std::function<void()> whenAsked;
};

struct Insertion
{
    QString text;
    std::optional<TargetApplication> target;
};

struct SubstituteInserter final : TextInserting
{
    Delivery insert(const QString &text, const std::optional<TargetApplication> &target,
                    const std::stop_token &stop) override
    {
        insertions.push_back({text, target});
        if (whenAsked)
            whenAsked(stop);
        return delivery;
    }

    void observeLateRequests(std::function<void(quint64 number)> handler) override
    {
        lateRequest = std::move(handler);
    }

    Delivery delivery{DeliveryOutcome::requested, 1};
    std::function<void(quint64 number)> lateRequest;
    std::vector<Insertion> insertions;
    std::function<void(const std::stop_token &)> whenAsked;
};

struct SubstituteModelManager final : ModelManaging
{
    QUrl prepareModelIfNeeded(bool forceDownload, const std::stop_token &stop) override
    {
        forced = forceDownload;
        stopToken = stop;
        if (whenAsked)
            whenAsked();
        return QUrl::fromLocalFile(u"/m.bin"_s);
    }
    ModelStatus modelStatus() override { return {}; }

    std::optional<bool> forced;
    std::stop_token stopToken;
    std::function<void()> whenAsked;
};

} // namespace kestrova
