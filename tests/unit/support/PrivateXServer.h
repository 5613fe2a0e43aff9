#pragma once

#include <QByteArray>

#include <initializer_list>

#include <sys/types.h>

namespace kestrova {

/// An X server of the test's own, to end or to stop. It lasts as long as this object.
class PrivateXServer
{
public:
    /// Returns when it answers; throws std::runtime_error when it does not start.
    explicit PrivateXServer(std::initializer_list<const char *> options = {});
    ~PrivateXServer();
    PrivateXServer(const PrivateXServer &) = delete;
    PrivateXServer &operator=(const PrivateXServer &) = delete;

    const QByteArray &displayName() const { return m_displayName; }
    /// Returns when it is gone.
    void kill();
    /// It keeps its connections and answers nothing, until its end.
    void freeze();

private:
    pid_t m_process = -1;
    QByteArray m_displayName;
};

} // namespace kestrova
