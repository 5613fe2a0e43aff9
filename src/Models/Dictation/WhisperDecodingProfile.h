#pragma once

#include "Models/Json/RawValue.h"

namespace kestrova {

/// How much work the transcription tool puts into decoding.
enum class WhisperDecodingProfile {
    balanced, ///< the tool's own defaults
    accurate, ///< wider beam and non-speech tokens suppressed
};

template <>
struct RawValues<WhisperDecodingProfile>
{
    static constexpr std::array table{
        std::pair{WhisperDecodingProfile::balanced, "balanced"},
        std::pair{WhisperDecodingProfile::accurate, "accurate"},
    };
};

} // namespace kestrova
