#include "bindings.h"
#include "libs/kestrel_probe/PivotFit.h"
#include "libs/kestrel_probe/Verdict.h"

#include <pybind11/numpy.h>

namespace py = pybind11;
using kestrel_probe::PivotFit;

namespace kestrel_python {

namespace {

using Input = py::array_t<double, py::array::c_style | py::array::forcecast>;

// Positions (n, 3), rotations (n, 3, 3) row by row, seconds (n,).
void addPoses(PivotFit& fit, const Input& positions, const Input& rotations, const Input& seconds) {
    const py::ssize_t count = seconds.ndim() == 1 ? seconds.shape(0) : -1;
    if (count < 0 || positions.ndim() != 2 || positions.shape(0) != count ||
        positions.shape(1) != 3 || rotations.ndim() != 3 || rotations.shape(0) != count ||
        rotations.shape(1) != 3 || rotations.shape(2) != 3) {
        throw py::value_error("positions (n, 3), rotations (n, 3, 3) and seconds (n,) are needed");
    }
    const double* position = positions.data();
    const double* rotation = rotations.data();
    for (py::ssize_t i = 0; i < count; ++i, position += 3, rotation += 9) {
        kestrel_probe::Pose pose{};
        pose.seconds = seconds.data()[i];
        for (std::size_t row = 0; row < 3; ++row) {
            pose.position[row] = position[row];
            for (std::size_t column = 0; column < 3; ++column) {
                pose.rotation[3 * column + row] = rotation[3 * row + column];
            }
        }
        fit.add(pose);
    }
}

py::array_t<double> vectorOf(const double* numbers) {
    return py::array_t<double>(3, numbers);
}

py::object solve(const PivotFit& fit) {
    const auto result = fit.solve();
    if (!result) {
        return py::none();
    }
    return py::make_tuple(vectorOf(result->tip), vectorOf(result->restingPoint), result->residual,
                          py::array_t<double>({3, 3}, result->covariance), result->radius95,
                          result->slip);
}

py::array_t<double> weakestAxis(const PivotFit& fit) {
    return vectorOf(fit.weakestAxis().data());
}

int judge(double error, double radius95, double tolerance) {
    return static_cast<int>(kestrel_probe::judge(error, radius95, tolerance));
}

} // namespace

void addProbe(py::module_& module) {
    py::class_<PivotFit>(module, "PivotFit")
        .def(py::init<>())
        .def("clear", &PivotFit::clear)
        .def("add", &addPoses, py::arg("positions"), py::arg("rotations"), py::arg("seconds"))
        .def("poses", &PivotFit::poses)
        .def("duration", &PivotFit::duration)
        .def("coverage", &PivotFit::coverage)
        .def("weakest_axis", &weakestAxis)
        .def("is_too_fast", &PivotFit::isTooFast)
        .def("solve", &solve);
    module.def("judge", &judge, py::arg("error"), py::arg("radius95"), py::arg("tolerance"));
    module.attr("SLIP_OVER_RESIDUAL") = PivotFit::slipOverResidual;
}

} // namespace kestrel_python
