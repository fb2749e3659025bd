#pragma once

#include <pybind11/pybind11.h>

namespace kestrel_python {

/// The part of the module that reads recordings.
void addRecording(pybind11::module_& module);

/// The part of the module that finds and judges tips.
void addProbe(pybind11::module_& module);

} // namespace kestrel_python
