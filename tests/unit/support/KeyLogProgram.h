#pragma once

#include <QProcess>

namespace kestrova {

/// Another program whose window has the keyboard of $DISPLAY. Ends with this object. Everything
/// throws std::runtime_error when the program fails.
class KeyLogProgram
{
public:
    /// Returns once its window has the keyboard.
    KeyLogProgram();
    ~KeyLogProgram();

    /// The keys that its window got since the last call, as "press CODE STATE" and "release CODE
    /// STATE".
    QStringList keys();
    /// Takes every key for its window, as an open menu does, whatever window has the focus.
    void grabKeyboard() { order("grab"); }
    void ungrabKeyboard() { order("ungrab"); }
    /// Takes the key, with any modifiers, whatever window has the focus.
    void reserve(int keyCode) { order("reserve " + QByteArray::number(keyCode)); }
    /// Takes the focus off every window.
    void leaveKeyboard() { order("leave"); }

private:
    QByteArray ask(const QByteArray &command);
    void order(const QByteArray &command);
    QByteArray readLine();

    QProcess m_process;
};

} // namespace kestrova
