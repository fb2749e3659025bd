#pragma once

#include "KestrelParser.h"
#include "tests/simulator/talk.h"

#include <string>
#include <vector>

/// Activates the channels and starts tracking.
void startMeasurement(Talk& talk, const std::vector<std::string>& channels);

/// Hands a frame to the parser. Every line must be read to its end without complaint.
void parseFrame(KestrelParser& parser, std::vector<std::string> lines);
