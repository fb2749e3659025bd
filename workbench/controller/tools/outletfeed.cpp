#include "workbench/controller/tools/outletfeed.h"

#include "workbench/controller/tools/toolfacts.h"
#include "workbench/outlets/sending/outlethub.h"

#include <optional>
#include <utility>
#include <vector>

namespace workbench {

OutletFeed::OutletFeed(ToolFacts& facts, OutletHub& hub, QObject* parent)
    : QObject(parent)
    , m_facts(facts)
    , m_hub(hub) {
    connect(&facts, &ToolFacts::changed, this, &OutletFeed::tellReferences);
}

void OutletFeed::refresh() {
    m_facts.setWanted(this, m_hub.hasOutlets());
}

void OutletFeed::tellReferences() {
    std::vector<std::optional<int>> references;
    references.reserve(static_cast<std::size_t>(m_facts.toolCount()));
    for (int number = 1; number <= m_facts.toolCount(); ++number) {
        references.push_back(m_facts.tool(number).reference);
    }
    m_hub.setReferences(std::move(references));
}

} // namespace workbench
