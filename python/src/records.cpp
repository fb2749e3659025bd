#include "records.h"

#include <algorithm>
#include <limits>
#include <pybind11/numpy.h>

namespace py = pybind11;
using namespace KestrelSDK_Datatypes;

namespace kestrel_python {

namespace {

using Numbers = py::array_t<double>;

constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

bool isTracked(double quality) {
    return quality != -1.0;
}

Numbers listOf(const double* first, int count) {
    return Numbers(py::ssize_t{count}, first);
}

Numbers position(const double (&loc)[3], bool tracked) {
    Numbers numbers(3);
    double* const to = numbers.mutable_data();
    for (int i = 0; i < 3; ++i) {
        to[i] = tracked ? loc[i] : unknown;
    }
    return numbers;
}

// Column by column in the record, row by row in the array.
Numbers rotation(const double (&rot)[9], bool tracked) {
    Numbers numbers({3, 3});
    double* const to = numbers.mutable_data();
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            to[3 * row + column] = tracked ? rot[3 * column + row] : unknown;
        }
    }
    return numbers;
}

// From the upper triangle, row by row.
Numbers covariance(const double (&cov)[6], bool tracked) {
    constexpr int from[9] = {0, 1, 2, 1, 3, 4, 2, 4, 5};
    Numbers numbers({3, 3});
    double* const to = numbers.mutable_data();
    for (int i = 0; i < 9; ++i) {
        to[i] = tracked ? cov[from[i]] : unknown;
    }
    return numbers;
}

template <int places>
py::array_t<bool> buttonsOf(const int (&buttons)[places], int count) {
    const int valid = std::clamp(count, 0, places);
    py::array_t<bool> pressed(valid);
    for (int i = 0; i < valid; ++i) {
        pressed.mutable_data()[i] = buttons[i] != 0;
    }
    return pressed;
}

template <class Record, class Convert>
py::list listOf(const KestrelParser& parser, int count,
                const Record* (KestrelParser::*get)(int) const, Convert convert) {
    py::list records;
    for (int i = 0; i < count; ++i) {
        records.append(convert(*(parser.*get)(i)));
    }
    return records;
}

template <class Record>
py::tuple bodyOf(const Record& body) {
    const bool tracked = isTracked(body.quality);
    return py::make_tuple(body.id, body.quality, position(body.loc, tracked),
                          rotation(body.rot, tracked));
}

py::tuple wandOf(const Kestrel_Wand_Type_d& wand) {
    const bool tracked = isTracked(wand.quality);
    const int axes = std::clamp(wand.num_joystick, 0, 8);
    return py::make_tuple(wand.id, wand.quality, position(wand.loc, tracked),
                          rotation(wand.rot, tracked), buttonsOf(wand.button, wand.num_button),
                          listOf(wand.joystick, axes));
}

py::tuple toolOf(const Kestrel_MeaTool_Type_d& tool) {
    const bool tracked = isTracked(tool.quality);
    return py::make_tuple(tool.id, tool.quality, position(tool.loc, tracked),
                          rotation(tool.rot, tracked), buttonsOf(tool.button, tool.num_button),
                          tool.tipradius, covariance(tool.cov, tracked));
}

py::tuple handOf(const Kestrel_Hand_Type_d& hand) {
    const bool tracked = isTracked(hand.quality);
    py::list fingers;
    for (int i = 0; i < std::clamp(hand.nfinger, 0, 5); ++i) {
        const Kestrel_Finger_Type_d& finger = hand.finger[i];
        fingers.append(py::make_tuple(position(finger.loc, tracked), rotation(finger.rot, tracked),
                                      finger.radiustip, listOf(finger.lengthphalanx, 3),
                                      listOf(finger.anglephalanx, 2)));
    }
    return py::make_tuple(hand.id, hand.quality, position(hand.loc, tracked),
                          rotation(hand.rot, tracked), hand.lr, fingers);
}

py::tuple humanOf(const Kestrel_Human_Type_d& human) {
    py::list joints;
    for (int i = 0; i < std::clamp(human.num_joints, 0, 20); ++i) {
        const Kestrel_Joint_Type_d& joint = human.joint[i];
        const bool tracked = isTracked(joint.quality);
        joints.append(py::make_tuple(joint.id, joint.quality, position(joint.loc, tracked),
                                     rotation(joint.rot, tracked), position(joint.ang, tracked)));
    }
    return py::make_tuple(human.id, joints);
}

py::tuple hybridBodyOf(const Kestrel_Inertial_Type_d& body) {
    const bool tracked = body.st != 0;
    return py::make_tuple(body.id, body.st, body.error, position(body.loc, tracked),
                          rotation(body.rot, tracked));
}

py::tuple markerOf(const Kestrel_Marker_Type_d& marker) {
    return py::make_tuple(marker.id, marker.quality,
                          position(marker.loc, isTracked(marker.quality)));
}

} // namespace

py::list bodiesOf(const KestrelParser& parser) {
    return listOf<Kestrel_Body_Type_d>(parser, parser.getNumBody(), &KestrelParser::getBody,
                                       bodyOf<Kestrel_Body_Type_d>);
}

py::list wandsOf(const KestrelParser& parser) {
    return listOf<Kestrel_Wand_Type_d>(parser, parser.getNumWand(), &KestrelParser::getWand,
                                       wandOf);
}

py::list toolsOf(const KestrelParser& parser) {
    return listOf<Kestrel_MeaTool_Type_d>(parser, parser.getNumMeaTool(),
                                          &KestrelParser::getMeaTool, toolOf);
}

py::list referencesOf(const KestrelParser& parser) {
    return listOf<Kestrel_MeaRef_Type_d>(parser, parser.getNumMeaRef(), &KestrelParser::getMeaRef,
                                         bodyOf<Kestrel_MeaRef_Type_d>);
}

py::list handsOf(const KestrelParser& parser) {
    return listOf<Kestrel_Hand_Type_d>(parser, parser.getNumHand(), &KestrelParser::getHand,
                                       handOf);
}

py::list humansOf(const KestrelParser& parser) {
    return listOf<Kestrel_Human_Type_d>(parser, parser.getNumHuman(), &KestrelParser::getHuman,
                                        humanOf);
}

py::list hybridBodiesOf(const KestrelParser& parser) {
    return listOf<Kestrel_Inertial_Type_d>(parser, parser.getNumInertial(),
                                           &KestrelParser::getInertial, hybridBodyOf);
}

py::list markersOf(const KestrelParser& parser) {
    return listOf<Kestrel_Marker_Type_d>(parser, parser.getNumMarker(), &KestrelParser::getMarker,
                                         markerOf);
}

} // namespace kestrel_python
