#pragma once

/// The orientation of a body as the three angles that the tables show, in degrees.
struct RotationAngles {
    double rx = 0.0;
    double ry = 0.0;
    double rz = 0.0;
};

/// The angles of a rotation matrix of nine numbers in the order of the controller's data lines.
/// The degenerate case is told by exact zeros (-0.0 included); values outside asin's domain give
/// NaN.
RotationAngles rotationAngles(const double (&rot)[9]);
