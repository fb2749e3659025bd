#include "simulator/words/parametertable.h"

#include <cmath>

namespace kestrel_simulator {

namespace {

using Offset = text::Words::difference_type;

text::Words slice(const text::Words& words, std::size_t from, std::size_t to) {
    return {words.begin() + static_cast<Offset>(from), words.begin() + static_cast<Offset>(to)};
}

} // namespace

Answer Answer::outOfRange(double minimum, double maximum) {
    const auto written = [](double number) { // without an exponent if it is whole
        return std::floor(number) == number ? text::fixed(number, 0) : text::shortest(number);
    };
    return refuse(ErrorNumber::BadValue,
                  "the value must be from " + written(minimum) + " to " + written(maximum));
}

Answer Answer::neitherYesNorNo() {
    return refuse(ErrorNumber::BadValue, "the value is neither yes nor no");
}

Answer Answer::noSuchTool() {
    return refuse(ErrorNumber::BadBody, "no such Measurement Tool");
}

void ParameterTable::add(const std::string& name, Parameter parameter) {
    m_parameters.insert_or_assign(name, std::move(parameter));
}

ParameterTable::Found ParameterTable::find(const text::Words& words) const {
    Found found;
    auto entry = m_parameters.end();
    for (const std::size_t nameSize : {2U, 1U}) {
        if (entry == m_parameters.end() && words.size() >= nameSize) {
            entry = m_parameters.find(text::join(slice(words, 0, nameSize)));
            found.nameSize = nameSize;
        }
    }
    if (entry == m_parameters.end()) {
        found.refusal = Answer::refuse(ErrorNumber::Unknown, "unknown parameter");
    } else if (!m_protocol.atLeast(entry->second.since.major, entry->second.since.minor)) {
        found.refusal = Answer::refuse(ErrorNumber::Unsupported,
                                       "needs protocol " + entry->second.since.toString());
    } else if (words.size() < found.nameSize + entry->second.argumentCount) {
        found.refusal = Answer::refuse(ErrorNumber::Malformed, "the parameter is incomplete");
    } else {
        found.parameter = &entry->second;
    }
    return found;
}

Answer ParameterTable::get(const text::Words& words) const {
    const Found found = find(words);
    if (!found.parameter) {
        return found.refusal;
    }
    const std::size_t argumentsEnd = found.nameSize + found.parameter->argumentCount;
    if (words.size() > argumentsEnd) {
        return Answer::refuse(ErrorNumber::Malformed, "too many words behind the parameter");
    }
    if (!found.parameter->get) {
        return Answer::refuse(ErrorNumber::Unknown, "the parameter cannot be read");
    }
    return found.parameter->get(slice(words, found.nameSize, argumentsEnd));
}

Answer ParameterTable::set(const text::Words& words) const {
    const Found found = find(words);
    if (!found.parameter) {
        return found.refusal;
    }
    if (!found.parameter->set) {
        return Answer::refuse(ErrorNumber::ReadOnly, "the parameter can be read only");
    }
    const std::size_t argumentsEnd = found.nameSize + found.parameter->argumentCount;
    if (words.size() == argumentsEnd) {
        return Answer::refuse(ErrorNumber::Malformed, "no value");
    }
    return found.parameter->set(slice(words, found.nameSize, argumentsEnd),
                                slice(words, argumentsEnd, words.size()));
}

} // namespace kestrel_simulator
