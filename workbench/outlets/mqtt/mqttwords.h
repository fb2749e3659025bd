#pragma once

#include <QString>

#include <string>

namespace workbench {

/// What the library has to say of a broker, in the user's language as far as it is known; the rest
/// in the library's own words.

/// Of a return code that is no success; MOSQ_ERR_ERRNO is explained by errno.
QString wordOfCode(int code);

/// Of the broker's answer to a login that it did not take.
QString wordOfAnswer(int answer);

/// Of an agreement on certificates that has failed: what the library has logged, and else the code.
QString wordOfCertificates(const std::string& logged, int code);

} // namespace workbench
