#include "simulator/words/configuration.h"

#include <algorithm>

namespace kestrel_simulator {

namespace {

const Version withTools = {1, 3, 0};
const Version withRadiusAndFormat = {1, 13, 0};

Answer noSuchReference() {
    return Answer::refuse(ErrorNumber::BadBody, "no such reference");
}

// a setter that the guard is asked before
Parameter::Set guarded(const Configuration::ChangeGuard& guard, Parameter::Set set) {
    return [guard, set = std::move(set)](const text::Words& arguments, const text::Words& value) {
        const std::optional<Answer> refusal = guard();
        return refusal ? *refusal : set(arguments, value);
    };
}

Answer setCount(const text::Words& value, int maximum, int& count, const char* what) {
    int number = 0;
    if (value.size() != 1 || !text::readInt(value[0], number)) {
        return Answer::refuse(ErrorNumber::BadValue, "the value is no number");
    }
    if (number < 0 || number > maximum) {
        return Answer::refuse(ErrorNumber::BadValue,
                              "0 to " + std::to_string(maximum) + " " + what + " are possible");
    }
    count = number;
    return Answer::ok();
}

} // namespace

Configuration::Configuration(const BodyLimits& limits, int tools, int references)
    : m_limits(limits)
    , m_toolCount(tools)
    , m_referenceCount(references)
    , m_tools(static_cast<std::size_t>(limits.tools))
    , m_referenceCalibrated(static_cast<std::size_t>(limits.references), true) {
    for (int i = 0; i < limits.tools; ++i) {
        Tool& each = tool(i);
        each.reference = i < 2 && i < references ? i + 1 : 0;
        each.tipRadius = 0.75 + 0.25 * (i % 4);
        each.tipCalibrated = tools < 2 || i != tools - 1;
    }
}

int Configuration::maxTools() const {
    return std::min(m_limits.tools, m_limits.bodies - m_referenceCount);
}

int Configuration::maxReferences() const {
    return std::min(m_limits.references, m_limits.bodies - m_toolCount);
}

int Configuration::referenceOf(int toolIndex) const {
    const int reference = tool(toolIndex).reference;
    return reference <= m_referenceCount ? reference - 1 : -1;
}

bool Configuration::referenceCalibrated(int index) const {
    return m_referenceCalibrated[static_cast<std::size_t>(index)];
}

void Configuration::setReferenceCalibrated(int index, bool calibrated) {
    m_referenceCalibrated[static_cast<std::size_t>(index)] = calibrated;
}

int Configuration::toolIndex(const std::string& word) const {
    const int number = text::readNumbered(word, 'b');
    return number <= m_toolCount ? number - 1 : -1;
}

int Configuration::referenceIndex(const std::string& word) const {
    const int number = text::readNumbered(word, 'b');
    return number <= m_referenceCount ? number - 1 : -1;
}

void Configuration::addParameters(ParameterTable& table, const ChangeGuard& guard) {
    addCounts(table, guard);
    addAssignments(table, guard);
    addNumber(table, guard, "measurementtool tip_radius", &Tool::tipRadius, 0.0, 20.0,
              withRadiusAndFormat);
    addNumber(table, guard, "measurementtool measurement_duration", &Tool::measurementDuration, 0.2,
              10.0, withTools);
    addNumber(table, guard, "measurementtool measurement_tip_tolerance", &Tool::tipTolerance, 0.1,
              5.0, withTools);
    addNumber(table, guard, "measurementtool measurement_start_angle", &Tool::startAngle, 10.0,
              120.0, withTools);
    addNumber(table, guard, "measurementtool measurement_start_lead_time", &Tool::startLeadTime,
              0.1, 1.0, withTools);
    addStartSimulation(table, guard);
    addCalibrationStates(table);
}

void Configuration::addCounts(ParameterTable& table, const ChangeGuard& guard) {
    const auto add = [&](const char* name, int& count, int (Configuration::*maximum)() const,
                         const char* what) {
        table.add(std::string("measurementtool number_of_") + name,
                  {0, withTools,
                   [&count](const text::Words&) { return Answer::value(std::to_string(count)); },
                   guarded(guard, [this, &count, maximum, what](const text::Words&,
                                                                const text::Words& value) {
                       return setCount(value, (this->*maximum)(), count, what);
                   })});
        table.add(std::string("measurementtool max_number_of_") + name,
                  {0, withTools,
                   [this, maximum](const text::Words&) {
                       return Answer::value(std::to_string((this->*maximum)()));
                   },
                   nullptr});
    };
    add("tools", m_toolCount, &Configuration::maxTools, "Measurement Tools");
    add("references", m_referenceCount, &Configuration::maxReferences, "references");
}

void Configuration::addAssignments(ParameterTable& table, const ChangeGuard& guard) {
    table.add(
        "measurementtool reference_of_tool",
        {1, withTools,
         [this](const text::Words& arguments) {
             const int index = toolIndex(arguments[0]);
             if (index < 0) {
                 return Answer::noSuchTool();
             }
             const int reference = referenceOf(index);
             return Answer::value(reference < 0 ? "none" : text::numbered('b', reference + 1));
         },
         guarded(guard, [this](const text::Words& arguments, const text::Words& value) {
             const int index = toolIndex(arguments[0]);
             return index < 0 ? Answer::noSuchTool() : assignReference(index, text::join(value));
         })});
    table.add("measurementtool output_6dmt",
              {0, withRadiusAndFormat,
               [this](const text::Words&) { return Answer::value(text::yesNo(m_usesOldFormat)); },
               guarded(guard, [this](const text::Words&, const text::Words& value) {
                   const auto old = text::readYesNo(text::join(value));
                   m_usesOldFormat = old.value_or(m_usesOldFormat);
                   return old ? Answer::ok() : Answer::neitherYesNorNo();
               })});
}

Answer Configuration::assignReference(int toolIndex, const std::string& reference) {
    if (reference == "none") {
        tool(toolIndex).reference = 0;
        return Answer::ok();
    }
    const int index = referenceIndex(reference);
    if (index < 0) {
        return noSuchReference();
    }
    tool(toolIndex).reference = index + 1;
    return Answer::ok();
}

void Configuration::addNumber(ParameterTable& table, const ChangeGuard& guard,
                              const std::string& name, double Tool::*member, double minimum,
                              double maximum, Version since) {
    table.add(name, {1, since,
                     [this, member](const text::Words& arguments) {
                         const int index = toolIndex(arguments[0]);
                         return index < 0 ? Answer::noSuchTool()
                                          : Answer::value(text::shortest(tool(index).*member));
                     },
                     guarded(guard, [this, member, minimum, maximum](const text::Words& arguments,
                                                                     const text::Words& value) {
                         const int index = toolIndex(arguments[0]);
                         double number = 0.0;
                         if (index < 0) {
                             return Answer::noSuchTool();
                         }
                         if (value.size() != 1 || !text::readDouble(value[0], number)) {
                             return Answer::refuse(ErrorNumber::BadValue, "the value is no number");
                         }
                         if (number < minimum || number > maximum) {
                             return Answer::outOfRange(minimum, maximum);
                         }
                         tool(index).*member = number;
                         return Answer::ok();
                     })});
}

void Configuration::addStartSimulation(ParameterTable& table, const ChangeGuard& guard) {
    table.add("measurementtool measurement_start_simulation",
              {1, withTools,
               [this](const text::Words& arguments) {
                   const int index = toolIndex(arguments[0]);
                   return index < 0 ? Answer::noSuchTool()
                                    : Answer::value(text::yesNo(tool(index).startSimulation));
               },
               guarded(guard, [this](const text::Words& arguments, const text::Words& value) {
                   const int index = toolIndex(arguments[0]);
                   if (index < 0) {
                       return Answer::noSuchTool();
                   }
                   const auto on = text::readYesNo(text::join(value));
                   tool(index).startSimulation = on.value_or(tool(index).startSimulation);
                   return on ? Answer::ok() : Answer::neitherYesNorNo();
               })});
}

void Configuration::addCalibrationStates(ParameterTable& table) {
    table.add("measurementtool tip_calibrated",
              {1, withTools,
               [this](const text::Words& arguments) {
                   const int index = toolIndex(arguments[0]);
                   return index < 0 ? Answer::noSuchTool()
                                    : Answer::value(text::yesNo(tool(index).tipCalibrated));
               },
               nullptr});
    table.add("body calibrated",
              {2, withTools,
               [this](const text::Words& arguments) {
                   if (arguments[0] == "measurementtool") {
                       const int index = toolIndex(arguments[1]);
                       return index < 0 ? Answer::noSuchTool()
                                        : Answer::value(text::yesNo(tool(index).bodyCalibrated));
                   }
                   if (arguments[0] == "measurementtool_reference") {
                       const int index = referenceIndex(arguments[1]);
                       return index < 0 ? noSuchReference()
                                        : Answer::value(text::yesNo(referenceCalibrated(index)));
                   }
                   return Answer::refuse(ErrorNumber::BadBody, "no such kind of body");
               },
               nullptr});
}

} // namespace kestrel_simulator
