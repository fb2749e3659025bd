#pragma once

class QDockWidget;
class QWidget;

namespace workbench {

struct Backend;
class ToolFacts;

/// The dock of the time plot, which `parent` owns; null in a build without Qwt. Backend and facts
/// outlive it.
QDockWidget* makePlotDock(Backend& backend, ToolFacts& facts, QWidget* parent);

} // namespace workbench
