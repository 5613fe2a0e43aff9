#include "Views/Scenes/SceneEngine.h"

#include "Models/ReadableError.h"
#include "Views/Primitives/Theme/Appearance.h"
#include "Views/Scenes/ApplicationIcon.h"
#include "Views/Scenes/KeyboardFocus.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QSGRendererInterface>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// Small, still windows: drawn on the CPU they are there sooner, in half of the memory. A user who
/// sets Qt's variable gets what it says.
void chooseRenderer()
{
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") &&
        !qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

/// What stands in for the theme's typefaces where they are not installed.
void chooseTypefaces()
{
    QFont::insertSubstitution(u"Inter Display"_s, u"Inter"_s);
    QFont::insertSubstitution(u"JetBrains Mono"_s, u"monospace"_s);
}

} // namespace

SceneEngine::SceneEngine(const AppState &state, const DesktopAppearance &desktop)
    : m_state(state), m_desktop(desktop)
{
    connect(&m_state, &AppState::settingsChanged, this, &SceneEngine::applyAppearance);
    connect(&m_desktop, &DesktopAppearance::changed, this, &SceneEngine::applyAppearance);
}

SceneEngine::~SceneEngine() = default;

std::unique_ptr<QQuickWindow> SceneEngine::buildWindow(const QUrl &document, QObject &model)
{
    if (!m_engine)
        start();
    QQmlComponent component(m_engine.get(), document);
    std::unique_ptr<QObject> object;
    if (component.isReady())
        object.reset(
            component.createWithInitialProperties({{u"model"_s, QVariant::fromValue(&model)}}));
    if (!object)
        throw PlatformError(component.errorString().trimmed());
    QQmlEngine::setObjectOwnership(&model, QQmlEngine::CppOwnership);
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(object.release()));
    new KeyboardFocus(*window);
    return window;
}

void SceneEngine::start()
{
    chooseRenderer();
    chooseTypefaces();
    QGuiApplication::setWindowIcon(applicationIcon());
    m_engine = std::make_unique<QQmlEngine>();
    m_engine->addImportPath(u"qrc:/"_s);
    QQmlComponent component(m_engine.get());
    component.setData("import Kestrova.Primitives\nTheme {}", {});
    m_appearance = m_engine->singletonInstance<Appearance *>(
        qmlTypeId("Kestrova.Primitives", 1, 0, "Appearance"));
    applyAppearance();
}

void SceneEngine::applyAppearance()
{
    if (!m_appearance)
        return;
    m_appearance->setProperty("dark", m_state.settings.get().theme == AppTheme::dark);
    m_appearance->setProperty("compositing", m_desktop.isCompositing());
    m_appearance->setProperty("reducedMotion", m_desktop.reducesMotion());
    m_appearance->setProperty("highContrast", m_desktop.isHighContrast());
}

} // namespace kestrova
