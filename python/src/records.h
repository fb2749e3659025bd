#pragma once

#include "KestrelParser.h"

#include <pybind11/pybind11.h>

/// The parser's tables as lists of tuples, whose fields are those of the classes in records.py in
/// their order. All arrays are copies. What is not tracked has NaN for its pose.
namespace kestrel_python {

pybind11::list bodiesOf(const KestrelParser& parser);
pybind11::list wandsOf(const KestrelParser& parser);
pybind11::list toolsOf(const KestrelParser& parser);
pybind11::list referencesOf(const KestrelParser& parser);
pybind11::list handsOf(const KestrelParser& parser);
pybind11::list humansOf(const KestrelParser& parser);
pybind11::list hybridBodiesOf(const KestrelParser& parser);
pybind11::list markersOf(const KestrelParser& parser);

} // namespace kestrel_python
