#include "bindings.h"
#include "posewalk.h"

#include <mutex>
#include <pybind11/numpy.h>

namespace py = pybind11;

namespace kestrel_python {

namespace {

// Bytes of a header are the controller's: UTF-8, if it keeps to its word.
py::str textOf(const std::string& bytes) {
    PyObject* const text = PyUnicode_DecodeUTF8(
        bytes.data(), static_cast<py::ssize_t>(bytes.size()), "surrogateescape");
    return py::reinterpret_steal<py::str>(text);
}

/// A walk that may be called from any thread: while it reads, other threads run.
class Poses {
public:
    Poses(const std::string& path, const std::string& kind, int index, std::uint64_t from,
          std::uint64_t to, bool leavesOutUnreadable)
        : m_walk({kind == "MR"  ? Kind::Reference
                  : kind == "B" ? Kind::Body
                                : Kind::Tool,
                  index,
                  {from, to},
                  leavesOutUnreadable}) {
        int systemError = 0;
        std::string reason;
        if (!m_walk.open(path, systemError, reason)) {
            if (systemError != 0) {
                errno = systemError;
                PyErr_SetFromErrnoWithFilename(PyExc_OSError, path.c_str());
            } else {
                PyErr_SetString(PyExc_OSError, (path + ": " + reason).c_str());
            }
            throw py::error_already_set();
        }
        m_isOpen = m_walk.readHeader(m_header);
    }

    py::dict versions() const {
        py::dict versions;
        versions["system"] = textOf(m_header.system);
        versions["protocol"] = textOf(m_header.protocol);
        versions["system_ct"] = textOf(m_header.systemCt);
        versions["model"] = textOf(m_header.model);
        return versions;
    }

    py::dict parameters() const {
        py::dict parameters;
        for (const auto& [name, value] : m_header.parameters) {
            parameters[textOf(name)] = textOf(value);
        }
        return parameters;
    }

    py::object start() const {
        return m_header.start ? py::object(py::int_(*m_header.start)) : py::none();
    }

    // How many rows were written from `first` on, and whether there may be more.
    py::tuple read(py::array rows, py::ssize_t first) {
        if (rows.ndim() != 1 || rows.itemsize() != static_cast<py::ssize_t>(sizeof(PoseRow)) ||
            (rows.flags() & py::array::c_style) == 0 || first < 0 || first > rows.shape(0)) {
            throw py::value_error("not an array of poses");
        }
        auto* const to = static_cast<PoseRow*>(rows.mutable_data()) + first;
        const auto capacity = static_cast<std::size_t>(rows.shape(0) - first);
        std::size_t count = 0;
        bool more = false;
        {
            const py::gil_scoped_release others;
            const std::lock_guard<std::mutex> lock(m_mutex);
            more = m_isOpen && m_walk.read(to, capacity, count);
            m_isOpen = more;
        }
        return py::make_tuple(count, more);
    }

    double share() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_walk.share();
    }

    // Why the walk is over: malformed, truncated, line, reason, unreadable lines.
    py::tuple outcome() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return py::make_tuple(m_walk.isMalformed(), m_walk.isTruncated(), m_walk.line(),
                              m_walk.reason(), m_walk.unreadableLines());
    }

private:
    std::mutex m_mutex;
    PoseWalk m_walk;
    kestrel_wire::RecordingHeader m_header;
    bool m_isOpen = false;
};

} // namespace

void addRecording(py::module_& module) {
    py::class_<Poses>(module, "Poses")
        .def(py::init<std::string, std::string, int, std::uint64_t, std::uint64_t, bool>(),
             py::arg("path"), py::arg("kind"), py::arg("index"), py::arg("begin"), py::arg("end"),
             py::arg("skip"))
        .def("versions", &Poses::versions)
        .def("parameters", &Poses::parameters)
        .def("start", &Poses::start)
        .def("read", &Poses::read, py::arg("rows"), py::arg("first"))
        .def("share", &Poses::share)
        .def("outcome", &Poses::outcome);
}

} // namespace kestrel_python
