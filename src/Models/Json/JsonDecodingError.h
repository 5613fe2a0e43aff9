#pragma once

#include "Models/ReadableError.h"

namespace kestrova {

/// A stored document that does not have the form it must have.
class JsonDecodingError final : public ReadableError
{
public:
    using ReadableError::ReadableError;
};

} // namespace kestrova
