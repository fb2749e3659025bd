#pragma once

#include "KestrelDatatypes.h"

#include <vector>

using ToolTable = std::vector<KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d>;
using BodyTable = std::vector<KestrelSDK_Datatypes::Kestrel_Body_Type_d>;

/// The yardsticks: readers of two kinds of lines that fill the same records as the parser. Each
/// reads a line behind its prefix into a table that already has the right size.
namespace PlainReaders {

/// The same scanners on the C library's strtol and strtod.
bool readTools2(char* line, ToolTable& table);
bool readBodies(char* line, BodyTable& table);

/// One pass that trusts the sample lines to the letter: the number of decimals of each number, one
/// blank or bracket between numbers. It checks nothing.
bool readKnownTools2(const char* line, ToolTable& table);
bool readKnownBodies(const char* line, BodyTable& table);

} // namespace PlainReaders
