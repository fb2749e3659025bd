#pragma once

class QComboBox;

namespace workbench {

/// Has a box offer the tools M1 to Mn, at the least up to the chosen one, which becomes its current
/// entry. The box is silent about it. GUI thread.
void offerTools(QComboBox& box, int count, int chosen);

} // namespace workbench
