#pragma once

#include "Platform/DesktopAppearance.h"
#include "ViewModels/AppState.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

namespace kestrova {

class Appearance;

/// Builds the windows, and keeps the theme of all of them at the user's choice and the desktop's
/// wishes. Holds no QML until the first window is built. Main thread.
class SceneEngine : public QObject
{
public:
    /// Both outlive this.
    SceneEngine(const AppState &state, const DesktopAppearance &desktop);
    /// The windows have to be gone.
    ~SceneEngine() override;

    /// The window of a document, hidden still, its "model" being the one given, which outlives it.
    /// Throws PlatformError when a part of it cannot be loaded.
    std::unique_ptr<QQuickWindow> buildWindow(const QUrl &document, QObject &model);

private:
    void start();
    void applyAppearance();

    const AppState &m_state;
    const DesktopAppearance &m_desktop;
    std::unique_ptr<QQmlEngine> m_engine;
    Appearance *m_appearance = nullptr; ///< the engine's
};

} // namespace kestrova
