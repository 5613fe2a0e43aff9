#pragma once

#include "Platform/Linux/X11/Keys/X11KeyEventMonitoring.h"
#include "support/ApplicationObject.h"
#include "support/KeyLogProgram.h"
#include "support/KeyPresses.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <utility>

namespace kestrova {

/// Monitors the keyboard while another program has it.
class KeyMonitoringTest : public testing::Test
{
protected:
    std::unique_ptr<KeyEventMonitoring::Monitor> monitor(std::vector<KeyEvent> &seen,
                                                         KeyEvent::Types types = KeyEvent::keyDown)
    {
        return m_monitoring.addGlobalMonitor(
            types, [&seen](const KeyEvent &event) { seen.push_back(event); });
    }

    /// Everything reported since the last call. Keys are reported in order, so a last one tells
    /// that there is no more.
    std::vector<KeyEvent> seen()
    {
        constexpr quint32 f12 = 111;
        tap(m_keyboard, key::f12);
        EXPECT_TRUE(waitUntil([&] { return !m_seen.empty() && m_seen.back().keyCode == f12; }));
        if (!m_seen.empty())
            m_seen.pop_back();
        return std::exchange(m_seen, {});
    }

    ApplicationObject<QCoreApplication> m_application;
    KeyLogProgram m_program;
    X11Connection m_connection;
    VirtualKeyboard m_keyboard{m_connection.xcb()};
    PostedKeys m_postedKeys;
    X11KeyEventMonitoring m_monitoring{m_postedKeys};
    std::vector<KeyEvent> m_seen;
    std::unique_ptr<KeyEventMonitoring::Monitor> m_monitor = monitor(m_seen);
};

} // namespace kestrova
