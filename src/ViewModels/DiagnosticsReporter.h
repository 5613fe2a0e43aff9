#pragma once

#include "Models/BundleInfo.h"
#include "Models/Dictation/DictationState.h"
#include "Models/ModelStatus.h"
#include "Models/PermissionSnapshot.h"
#include "Models/Settings/AppSettings.h"

namespace kestrova {

/// Describes the installation, its permissions, its settings and its present state, for the user
/// to pass on. Holds neither transcripts nor anything else that was dictated.
struct DiagnosticsReporter
{
    PermissionSnapshot permissions;
    ModelStatus modelStatus;
    AppSettings settings;
    DictationState state;
    BundleInfo bundle;

    /// A JSON object (RFC 8259): a member per line, indented, keys sorted at every level, solidus
    /// escaped, without a line break at the end. When the report holds what JSON cannot, an object
    /// with the one member "error".
    QString renderJSON() const;
};

} // namespace kestrova
