#include "Views/Scenes/WindowSizes.h"

#include "Models/ReadableError.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

/// An object with an array of width and height, in logical pixels, for each window.
constexpr auto documentKey = "kestrova.windows.v1"_L1;

QJsonObject storedSizes(const UserDefaults &defaults)
{
    try {
        return QJsonDocument::fromJson(defaults.data(documentKey).value_or(QByteArray())).object();
    } catch (const ReadableError &) {
        return {};
    }
}

} // namespace

WindowSizes::WindowSizes(UserDefaults &defaults) : m_defaults(defaults)
{
    const QJsonObject stored = storedSizes(defaults);
    for (auto window = stored.begin(); window != stored.end(); ++window) {
        const QJsonArray pair = window->toArray();
        const QSize size(pair.at(0).toInt(), pair.at(1).toInt());
        if (!size.isEmpty())
            m_sizes.insert(window.key(), size);
    }
}

std::optional<QSize> WindowSizes::size(const QString &window) const
{
    const auto found = m_sizes.constFind(window);
    return found == m_sizes.cend() ? std::nullopt : std::optional(*found);
}

void WindowSizes::setSize(const QString &window, QSize size)
{
    if (m_sizes.value(window) == size)
        return;
    m_sizes.insert(window, size);
    QJsonObject document;
    for (auto entry = m_sizes.cbegin(); entry != m_sizes.cend(); ++entry)
        document.insert(entry.key(), QJsonArray{entry->width(), entry->height()});
    try {
        m_defaults.setData(documentKey, QJsonDocument(document).toJson(QJsonDocument::Compact));
    } catch (const ReadableError &) {
        // The window opens with its first size again.
    }
}

} // namespace kestrova
