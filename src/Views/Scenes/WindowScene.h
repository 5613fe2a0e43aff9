#pragma once

#include "Views/Scenes/SceneEngine.h"
#include "Views/Scenes/WindowSizes.h"

#include <QMargins>

#include <functional>
#include <memory>

namespace kestrova {

/// One of the program's ordinary windows, of which there is at most one at a time: built when it is
/// opened, gone when it is closed. Main thread.
class WindowScene : public QObject
{
    Q_OBJECT

public:
    /// What a title bar and a frame take of the screen at most: how much it is can be known only
    /// once the window is shown.
    static constexpr QMargins frameRoom{4, 32, 4, 4};

    struct Description
    {
        QString identifier;
        QUrl document; ///< a Window with a property "model"
        std::function<std::unique_ptr<QObject>()> makeModel;
    };

    /// Engine and sizes outlive this.
    WindowScene(SceneEngine &engine, WindowSizes &sizes, Description description);
    ~WindowScene() override;

    const QString &identifier() const { return m_description.identifier; }
    /// Shows the window and brings it to the front, with the keyboard.
    void open();
    void close();
    bool isOpen() const { return m_window != nullptr; }

Q_SIGNALS:
    /// The opened window has been drawn.
    void shown();
    void closed();

private:
    void build();
    void dismantle();
    void keepSize();

    SceneEngine &m_engine;
    WindowSizes &m_sizes;
    const Description m_description;
    std::unique_ptr<QObject> m_model;
    std::unique_ptr<QQuickWindow> m_window;
};

} // namespace kestrova
