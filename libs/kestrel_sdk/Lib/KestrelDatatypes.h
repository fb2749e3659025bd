#pragma once

/// What the frame parser makes of the controller's data lines: plain values, one record per tracked
/// object, every number as the line has it.
///
/// `id` counts from 0. `quality` is the tracking quality; -1 means not tracked. `loc` is a position
/// in mm. `rot` is the matrix R that turns the object's own axes into the room's, column by column:
/// rot[0], rot[1], rot[2] are its first column, the object's x axis as the room sees it; row r of
/// column c is rot[3 * c + r]. Nothing is converted, nor checked to be a rotation. Angles of
/// fingers and joints are in the controller's unit, which the lines do not tell.
namespace KestrelSDK_Datatypes {

/// Standard body, line "6d".
struct Kestrel_Body_Type_d {
    int id;         ///< number, counted from 0
    double quality; ///< -1 when not tracked
    double loc[3];  ///< position in mm
    double rot[9];  ///< rotation matrix, column by column
};

/// Hand-held interaction device, lines "6df" and "6df2".
struct Kestrel_Wand_Type_d {
    int id;             ///< number, counted from 0
    double quality;     ///< -1 when not tracked
    int num_button;     ///< valid entries of `button`
    int button[16];     ///< 1 pressed, 0 released
    int num_joystick;   ///< valid entries of `joystick`
    double joystick[8]; ///< in the order of the line
    double loc[3];      ///< position in mm
    double rot[9];      ///< rotation matrix, column by column
};

/// Measurement Tool, lines "6dmt" and "6dmt2".
struct Kestrel_MeaTool_Type_d {
    int id;           ///< number, counted from 0
    double quality;   ///< -1 when not tracked
    int num_button;   ///< valid entries of `button`
    int button[16];   ///< 1 pressed, 0 released
    double loc[3];    ///< position of the tip in mm, from the tool's reference if it has one
    double rot[9];    ///< rotation matrix, column by column
    double tipradius; ///< in mm; 0 when the line does not carry it
    double cov[6];    ///< covariance of the tip's position in mm²; 0 when the line has none
};

/// Measurement Tool reference, line "6dmtr".
struct Kestrel_MeaRef_Type_d {
    int id;         ///< number, counted from 0
    double quality; ///< -1 when not tracked
    double loc[3];  ///< position in mm
    double rot[9];  ///< rotation matrix, column by column
};

/// One finger of a hand; position and orientation are those of its tip.
struct Kestrel_Finger_Type_d {
    double loc[3];           ///< position in mm
    double rot[9];           ///< rotation matrix, column by column
    double radiustip;        ///< radius of the finger's tip in mm
    double lengthphalanx[3]; ///< in mm, from the tip inwards
    double
        anglephalanx[2]; ///< between the phalanxes, from the tip inwards, in the controller's unit
};

/// Tracked hand, line "gl"; position and orientation are those of the back of the hand.
struct Kestrel_Hand_Type_d {
    int id;                          ///< number, counted from 0
    double quality;                  ///< -1 when not tracked
    int lr;                          ///< which hand, left or right
    int nfinger;                     ///< valid entries of `finger`
    double loc[3];                   ///< position in mm
    double rot[9];                   ///< rotation matrix, column by column
    Kestrel_Finger_Type_d finger[5]; ///< in the order of the line
};

/// One joint of a human model.
struct Kestrel_Joint_Type_d {
    int id;         ///< a name, any number
    double quality; ///< -1 when not tracked
    double loc[3];  ///< position in mm
    double ang[3];  ///< angles in the controller's unit
    double rot[9];  ///< rotation matrix, column by column
};

/// Human model, line "6dj".
struct Kestrel_Human_Type_d {
    int id;                         ///< number, counted from 0
    int num_joints;                 ///< valid entries of `joint`
    Kestrel_Joint_Type_d joint[20]; ///< in the order of the line
};

/// Hybrid body with inertial sensor, line "6di".
struct Kestrel_Inertial_Type_d {
    int id;        ///< number, counted from 0
    int st;        ///< tracking state; 0 means not tracked
    double error;  ///< the controller's error estimate
    double loc[3]; ///< position in mm
    double rot[9]; ///< rotation matrix, column by column
};

/// Single marker, line "3d".
struct Kestrel_Marker_Type_d {
    int id;         ///< a name, any number
    double quality; ///< -1 when not tracked
    double loc[3];  ///< position in mm
};

} // namespace KestrelSDK_Datatypes
