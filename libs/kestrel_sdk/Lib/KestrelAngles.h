#pragma once

/// The orientation of tracked objects in angles.
namespace KestrelSDK_Angles {

/// An orientation as three angles in degrees: R = Rx(rx) Ry(ry) Rz(rz).
struct RotationAngles {
    double rx = 0.0; ///< about the x axis
    double ry = 0.0; ///< about the y axis
    double rz = 0.0; ///< about the z axis
};

/// The angles of a rotation matrix, nine numbers column by column as in the records. The degenerate
/// case, in which only one of rx and rz is determined and rz is 0, is told by exact zeros (-0.0
/// included); values outside asin's domain give NaN.
RotationAngles rotationAngles(const double (&rot)[9]);

} // namespace KestrelSDK_Angles
