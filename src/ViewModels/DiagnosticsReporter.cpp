#include "ViewModels/DiagnosticsReporter.h"

#include "Models/Json/JsonObjectReader.h"

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

// QJsonObject keeps its keys sorted.
QJsonObject describe(const DiagnosticsReporter &reporter)
{
    QJsonObject report{{"bundleIdentifier"_L1, reporter.bundle.identifier.value_or(u""_s)},
                       {"executablePath"_L1, reporter.bundle.executablePath},
                       {"appVersion"_L1, reporter.bundle.version.value_or(u"dev"_s)},
                       {"buildVersion"_L1, reporter.bundle.buildVersion.value_or(u"dev"_s)},
                       {"state"_L1, reporter.state.displayText()},
                       {"modelPath"_L1, reporter.modelStatus.modelPath},
                       {"modelReady"_L1, reporter.modelStatus.isReady},
                       {"modelExpectedSHA256"_L1, reporter.modelStatus.expectedSHA256},
                       {"permissions"_L1, describe(reporter.permissions)},
                       {"settings"_L1, describe(reporter.settings)}};
    if (reporter.settings.modelSHA256.isEmpty()) {
        report.insert("warnings"_L1,
                      QJsonArray{u"Model SHA256 is empty; model downloads are unverified."_s});
    }
    return report;
}

} // namespace

QString DiagnosticsReporter::renderJSON() const
{
    try {
        QByteArray json = QJsonDocument(describe(*this)).toJson(QJsonDocument::Indented).trimmed();
        parseJsonObject(json); // Half a character has an escape here, but is no JSON.
        // A solidus stands in strings only.
        return QString::fromUtf8(json.replace('/', "\\/"));
    } catch (const std::exception &) {
        return uR"({"error":"Failed to generate diagnostics"})"_s;
    }
}

} // namespace kestrova
