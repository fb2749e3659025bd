#include "bindings.h"
#include "records.h"

#include <string>

namespace py = pybind11;

namespace {

bool parseLine(KestrelParser& parser, const py::bytes& line) {
    return parser.parseLine(static_cast<std::string>(line).c_str());
}

} // namespace

PYBIND11_MODULE(_native, module) {
    module.doc() = "What kestrel_sdk is made of in C++; not for use from outside.";
    py::class_<KestrelParser>(module, "Parser")
        .def(py::init<>())
        .def("start_frame", &KestrelParser::startFrame)
        .def("end_frame", &KestrelParser::endFrame)
        .def("parse_line", &parseLine, py::arg("line"))
        .def("counter", &KestrelParser::getFrameCounter)
        .def("timestamp", &KestrelParser::getTimeStamp)
        .def("bodies", &kestrel_python::bodiesOf)
        .def("wands", &kestrel_python::wandsOf)
        .def("tools", &kestrel_python::toolsOf)
        .def("references", &kestrel_python::referencesOf)
        .def("hands", &kestrel_python::handsOf)
        .def("humans", &kestrel_python::humansOf)
        .def("hybrid_bodies", &kestrel_python::hybridBodiesOf)
        .def("markers", &kestrel_python::markersOf);
    kestrel_python::addRecording(module);
    kestrel_python::addProbe(module);
}
