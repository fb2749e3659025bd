#include "libs/kestrel_wire/recording.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>

using namespace kestrel_wire;

// The bytes are a recording. What the reader takes must come back the same when it is written
// again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(data), size));
    RecordingReader reader(stream);
    RecordingHeader header;
    if (reader.readHeader(header) != RecordingReader::Result::Ok) {
        return 0;
    }
    std::string rewritten = formatRecordingHeader(header);
    Record record;
    std::size_t records = 0;
    while (reader.next(record) == RecordingReader::Result::Ok) {
        rewritten += formatRecord(record.microseconds, record.line);
        ++records;
    }
    std::istringstream again(rewritten);
    RecordingReader second(again);
    RecordingHeader sameHeader;
    if (second.readHeader(sameHeader) != RecordingReader::Result::Ok ||
        sameHeader.parameters != header.parameters || sameHeader.model != header.model) {
        std::abort();
    }
    while (second.next(record) == RecordingReader::Result::Ok) {
        --records;
    }
    if (records != 0 || second.truncated()) {
        std::abort();
    }
    return 0;
}
