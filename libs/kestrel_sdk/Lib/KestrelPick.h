#pragma once

#include "KestrelDatatypes.h"

/// Single records of data lines, for who wants one of many: the others are not read.
namespace KestrelSDK_Pick {

/// What became of the search for a record.
enum class Found {
    Yes,       ///< it was filled
    NotListed, ///< the line does not tell of it, or is of another kind
    Malformed  ///< the line cannot be read as far as the record's end
};

/// Tool `index`, from 0, of a NUL-terminated "6dmt2" line, as KestrelParser fills it, but for
/// `cov`: that stays as it is, its block needs only to be there. Entries before the tool's are
/// passed over, what stands behind it is not looked at; so what is malformed there is not told.
/// `tool` keeps what it was filled with so far, as in the parser. Neither throws nor allocates.
Found meaTool(const char* line, int index, KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d& tool);

} // namespace KestrelSDK_Pick
