#pragma once

#include "libs/kestrel_wire/command.h"
#include "simulator/words/text.h"
#include "simulator/words/version.h"

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>

namespace kestrel_simulator {

using kestrel_wire::ErrorNumber;

/// What a parameter or an action answers: a value (empty for a set or an action), or a refusal with
/// its reason.
struct Answer {
    std::string text;
    std::optional<ErrorNumber> error;

    static Answer value(std::string text) { return {std::move(text), std::nullopt}; }
    static Answer ok() { return {}; }
    static Answer refuse(ErrorNumber error, std::string reason) {
        return {std::move(reason), error};
    }
    static Answer wrongState(std::string reason) {
        return refuse(ErrorNumber::WrongState, std::move(reason));
    }

    /// Refusals that many parameters have.
    static Answer outOfRange(double minimum, double maximum);
    static Answer neitherYesNorNo();
    static Answer noSuchTool();
};

/// A parameter's name is its first one or two words; the words behind it are arguments (a body, a
/// step, a calibration type), and in a set the words behind those are the value.
struct Parameter {
    using Get = std::function<Answer(const text::Words& arguments)>;
    using Set = std::function<Answer(const text::Words& arguments, const text::Words& value)>;

    std::size_t argumentCount = 0;
    Version since; ///< first protocol version that has it
    Get get;
    Set set; ///< none: the parameter can be read only
};

/// The controller's parameters by name. What its functions refer to must outlive the table.
class ParameterTable {
public:
    explicit ParameterTable(Version protocol)
        : m_protocol(protocol) {}

    void setProtocol(Version protocol) { m_protocol = protocol; }

    void add(const std::string& name, Parameter parameter);

    Answer get(const text::Words& words) const;
    Answer set(const text::Words& words) const;

private:
    struct Found {
        const Parameter* parameter = nullptr;
        std::size_t nameSize = 0; // words
        Answer refusal;
    };
    Found find(const text::Words& words) const;

    Version m_protocol;
    std::unordered_map<std::string, Parameter> m_parameters;
};

} // namespace kestrel_simulator
