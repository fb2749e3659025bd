#include "libs/kestrel_wire/recording.h"

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

using namespace kestrel_wire;

namespace {

using Result = RecordingReader::Result;
using Contents = RecordingReader::Contents;

constexpr std::size_t maxPlaces = 10; // that are gone back to

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

struct Reading {
    bool hasHeader = false;
    bool isWhole = false;  // to a proper end
    std::string rewritten; // header and records as a writer writes them
};

Reading read(const std::string& bytes, Contents contents) {
    std::istringstream stream(bytes);
    RecordingReader reader(stream, contents);
    Reading reading;
    RecordingHeader header;
    reading.hasHeader = reader.readHeader(header) == Result::Ok;
    if (!reading.hasHeader) {
        return reading;
    }
    reading.rewritten = formatRecordingHeader(header);
    RecordingReader::Place place = reader.place();
    std::vector<std::pair<RecordingReader::Place, Record>> places;
    Record record;
    std::optional<ClockMark> marked = reader.clock();
    Result result = reader.next(record);
    for (; result == Result::Ok; result = reader.next(record)) {
        const std::optional<ClockMark>& clock = reader.clock();
        require(clock.has_value() == header.start.has_value());
        if (clock && (clock->microseconds != marked->microseconds || clock->utc != marked->utc)) {
            require(clock->microseconds <= record.microseconds);
            reading.rewritten += formatClockMark(*clock);
            marked = clock;
        }
        require(contents == Contents::Any ||
                record.line.find_first_of("\r\n") == std::string::npos);
        reading.rewritten += formatRecord(record.microseconds, record.line);
        if (places.size() < maxPlaces) {
            places.emplace_back(place, record);
        }
        place = reader.place();
    }
    reading.isWhole = result == Result::End && !reader.truncated();
    for (auto known = places.rbegin(); known != places.rend(); ++known) {
        reader.goTo(known->first);
        require(reader.next(record) == Result::Ok);
        require(record.microseconds == known->second.microseconds);
        require(record.line == known->second.line);
    }
    return reading;
}

} // namespace

/// The bytes are a recording. What the reader takes comes back the same when it is written again,
/// and when it is gone back to; who reads to send takes no more than that.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const Reading first = read(bytes, Contents::Any);
    const Reading toSend = read(bytes, Contents::Sendable);
    require(first.rewritten.compare(0, toSend.rewritten.size(), toSend.rewritten) == 0);
    if (first.hasHeader) {
        const Reading again = read(first.rewritten, Contents::Any);
        require(again.isWhole && again.rewritten == first.rewritten);
    }
    return 0;
}
