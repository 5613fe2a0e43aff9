#pragma once

#include "Models/Dictation/AudioRecording.h"
#include "Models/Dictation/Delivery.h"
#include "Models/Dictation/TargetApplication.h"
#include "Models/Dictation/TranscriptionResult.h"
#include "Models/ModelStatus.h"
#include "Models/PermissionSnapshot.h"
#include "Models/Usage/UsageRecords.h"
#include "Models/Usage/UsageTrendPeriod.h"
#include "Services/HotkeyBinding.h"
#include "Services/HotkeyStatus.h"

#include <QList>
#include <QUrl>

#include <functional>
#include <stop_token>

/// The service interfaces: the coordinator and the controller hold each service only through
/// these. Blocking operations are called on a worker. They throw KestrovaError for failures that
/// the service detects itself, let errors of the platform pass through unchanged, and throw
/// Cancelled where they honour a stop request.
namespace kestrova {

class AudioCapturing
{
public:
    virtual ~AudioCapturing() = default;

    /// True while a recording is under way.
    virtual bool isRecording() const = 0;
    virtual void startRecording() = 0;
    virtual AudioRecording stopRecording() = 0;
};

class Transcribing
{
public:
    virtual ~Transcribing() = default;

    /// Blocks for as long as the transcription takes.
    virtual TranscriptionResult transcribe(const QUrl &audioURL, const QUrl &modelURL,
                                           const std::stop_token &stop) = 0;
};

class TextInserting
{
public:
    virtual ~TextInserting() = default;

    /// Inserts the text into the target, or into whatever is in front when there is none.
    virtual Delivery insert(const QString &text, const std::optional<TargetApplication> &target,
                            const std::stop_token &stop) = 0;
    /// Calls the handler on the main thread with the number of a delivery whose text was asked for
    /// after all, once insert() had returned. Set once, before the first insertion.
    virtual void observeLateRequests(std::function<void(quint64 number)> handler) = 0;
};

/// Main thread.
class HotkeyManaging
{
public:
    virtual ~HotkeyManaging() = default;

    /// Replaces all earlier bindings.
    virtual void registerBindings(const QList<HotkeyBinding> &bindings) = 0;
    /// Removes all bindings.
    virtual void unregister() = 0;

    /// How the shortcut of a binding stands, or stood when it was last registered.
    virtual HotkeyStatus status(const HotkeyBinding &binding) const = 0;
    /// Calls the handler when status() says something else than before. Set once.
    virtual void observeStatus(std::function<void()> changed) = 0;
    virtual ShortcutEditing editing() const = 0;
    /// Opens the desktop's dialog, where there is one.
    virtual void configure() = 0;
};

class ModelManaging
{
public:
    virtual ~ModelManaging() = default;

    /// Returns the file URL of the ready model, downloading it first where needed.
    virtual QUrl prepareModelIfNeeded(bool forceDownload, const std::stop_token &stop) = 0;
    /// Reads the disk only, without hashing and without the network. Any thread.
    virtual ModelStatus modelStatus() = 0;
};

/// Main thread; the completion is called there too. Nothing fails.
class PermissionManaging
{
public:
    virtual ~PermissionManaging() = default;

    /// Asks nobody.
    virtual PermissionSnapshot currentPermissions() = 0;
    /// The completion is called, now or later, with whether the microphone may be used.
    virtual void requestMicrophonePermission(std::function<void(bool isGranted)> completion) = 0;
    /// Asks the system to show its accessibility prompt.
    virtual void promptForAccessibility() = 0;
};

/// All operations are synchronous and never throw.
class UsageAnalyticsManaging
{
public:
    virtual ~UsageAnalyticsManaging() = default;

    /// Drops events older than the retention period.
    virtual void refreshRetention() = 0;
    virtual void record(const UsageEvent &event) = 0;
    virtual UsageDashboardSnapshot dashboardSnapshot(Date now) = 0;
    virtual QList<UsageBucket> trendBuckets(UsageTrendPeriod period, Date now) = 0;
};

} // namespace kestrova
