#include "ViewModels/DiagnosticsReporter.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kestrova {

using namespace Qt::StringLiterals;

namespace {

QJsonObject describe(const PermissionSnapshot &permissions)
{
    return {{"microphone"_L1, permissions.microphoneAuthorized},
            {"microphoneStatus"_L1, rawValue(permissions.microphoneStatus)},
            {"accessibility"_L1, permissions.accessibilityAuthorized}};
}

QJsonArray describeAssignedSlots(const QList<HotbarSlotAssignment> &assignments)
{
    QJsonArray assigned;
    for (const HotbarSlotAssignment &slot : assignments) {
        if (slot.bundleIdentifier.value_or(QString()).isEmpty())
            continue;
        assigned.append(QJsonObject{{"slot"_L1, slot.slotIndex},
                                    {"bundleIdentifier"_L1, *slot.bundleIdentifier},
                                    {"appName"_L1, slot.appName.value_or(u""_s)}});
    }
    return assigned;
}

QJsonObject describe(const AppSettings &settings)
{
    return {{"shortcut"_L1, settings.shortcut.displayText()},
            {"whisperCLIPath"_L1, settings.whisperCLIPath},
            {"modelDownloadURL"_L1, settings.modelDownloadURL},
            {"transcriptionLanguage"_L1, settings.transcriptionLanguage},
            {"decodingProfile"_L1, rawValue(settings.decodingProfile)},
            {"theme"_L1, rawValue(settings.theme)},
            {"hotbarAssignedSlots"_L1, describeAssignedSlots(settings.hotbarAssignments)}};
}

} // namespace

QString DiagnosticsReporter::renderJSON() const
{
    QJsonObject report{{"bundleIdentifier"_L1, bundle.identifier.value_or(u""_s)},
                       {"executablePath"_L1, bundle.executablePath},
                       {"appVersion"_L1, bundle.version.value_or(u"dev"_s)},
                       {"buildVersion"_L1, bundle.buildVersion.value_or(u"dev"_s)},
                       {"state"_L1, state.displayText()},
                       {"modelPath"_L1, modelStatus.modelPath},
                       {"modelReady"_L1, modelStatus.isReady},
                       {"modelExpectedSHA256"_L1, modelStatus.expectedSHA256},
                       {"permissions"_L1, describe(permissions)},
                       {"settings"_L1, describe(settings)}};
    if (settings.modelSHA256.isEmpty()) {
        report.insert("warnings"_L1,
                      QJsonArray{u"Model SHA256 is empty; model downloads are unverified."_s});
    }
    // QJsonObject keeps its keys sorted. A solidus stands in strings only.
    QByteArray json = QJsonDocument(report).toJson(QJsonDocument::Indented).trimmed();
    return QString::fromUtf8(json.replace('/', "\\/"));
}

} // namespace kestrova
