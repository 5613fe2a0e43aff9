#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>
#include <QVariantMap>

#include <chrono>
#include <functional>
#include <optional>

namespace kestrova {

/// A question to the user by way of xdg-desktop-portal, which answers it later by an object of its
/// own (org.freedesktop.portal.Request, version 1). It deletes itself after the answer. Deleted
/// before, it is closed, so that the desktop takes its dialog away. Main thread.
class PortalRequest final : public QObject
{
    Q_OBJECT

public:
    enum class Outcome {
        granted,
        cancelled, ///< by the user
        failed,    ///< the portal did not ask, went away, or did not answer in time
    };
    struct Answer
    {
        Outcome outcome = Outcome::failed;
        QVariantMap results; ///< what the method's documentation names; none unless granted
    };
    /// Called once, from the event loop, and never after this object's end. It may delete the
    /// object's parent.
    using Completion = std::function<void(const Answer &answer)>;

    /// A method of org.freedesktop.portal.Desktop, which takes options as its last argument.
    struct Call
    {
        QString interface;
        QString method;
        QVariantList arguments; ///< those before the options
        QVariantMap options;    ///< without handle_token, which is added
    };

    /// Returns at once. Without a limit it waits for as long as the user takes.
    PortalRequest(const Call &call, Completion completion, QObject *parent,
                  std::optional<std::chrono::milliseconds> limit = std::nullopt);
    ~PortalRequest() override;

private:
    Q_SLOT void takeResponse(uint response, const QVariantMap &results);

    void send(const Call &call, const QString &token);
    void listenTo(const QString &path);
    void takeReply(const QDBusMessage &reply);
    void close();
    void finish(const Answer &answer);

    QDBusConnection m_bus;
    QString m_path;          // of the object that answers
    Completion m_completion; // none after the answer
    QTimer m_limit;
};

} // namespace kestrova
