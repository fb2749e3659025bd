"""Who may know whom: the rooms of this repository and the arrows between them."""

CONTRACT = "host_api"
SDK = "libs/kestrel_sdk"
PROBE = "libs/kestrel_probe"
WIRE = "libs/kestrel_wire"
RECORDING = "libs/kestrel_recording"
PLUGIN = ["SourceFiles", "general", CONTRACT, SDK, "ui"]
SENDING = "workbench/outlets/sending"
WORKBENCH = ["workbench", "workbench/text", "workbench/controller", "workbench/modules",
             "workbench/outlets", SENDING, "workbench/window"]
SIMULATOR = ["simulator", "simulator/words", "simulator/geometry", "simulator/controller"]
HOST = [CONTRACT, SDK, WIRE, RECORDING]
TEST_HOST = ["tests/support", CONTRACT, SDK]

# Room: the other rooms that it may know. A folder belongs to the longest name that fits; a source
# in a folder without a room is an error. A room that is not there yet has its rule already.
KNOWS = {
    CONTRACT: [],
    "general": [CONTRACT, SDK, "ui"],
    "SourceFiles": ["general", CONTRACT, SDK, PROBE, "ui"],
    "probecheck": ["general", CONTRACT, SDK, PROBE, "probecheck/sounds"],
    "probecheck/sounds": [],
    SDK: [],
    PROBE: [],
    WIRE: [SDK],
    RECORDING: [WIRE, SDK],
    "workbench/text": HOST,
    "workbench/outlets": HOST,
    SENDING: HOST + ["workbench/outlets"],
    # Each is loaded when it is wanted: nobody else includes them.
    "workbench/outlets/mqtt": HOST + ["workbench/outlets", SENDING],
    "workbench/outlets/igtl": HOST + ["workbench/outlets", SENDING],
    "workbench/controller": HOST + ["workbench/text", "workbench/outlets", SENDING],
    "workbench/modules": HOST + ["workbench/text", "workbench/controller", "workbench/outlets",
                                 SENDING],
    "workbench/window": HOST + ["workbench/text", "workbench/controller", "workbench/modules",
                                "workbench/outlets", SENDING],
    "workbench": HOST + WORKBENCH,
    "simulator/geometry": [PROBE],
    "simulator/words": [WIRE, SDK, "simulator/geometry"],
    "simulator/controller": [WIRE, SDK, "simulator/words", "simulator/geometry"],
    "simulator": [WIRE, SDK] + SIMULATOR,
    "recording": [WIRE, RECORDING],
    "python": [SDK, PROBE, WIRE, RECORDING],
    "tests/support": [CONTRACT, WIRE],
    "tests/host_api": [CONTRACT],
    "tests/general": TEST_HOST + ["general", "ui"],
    "tests/SourceFiles": TEST_HOST + PLUGIN + ["tests/general"],
    "tests/probecheck": TEST_HOST + ["probecheck", "probecheck/sounds", "general", PROBE],
    "tests/libs/kestrel_sdk": [SDK],
    "tests/libs/kestrel_probe": [PROBE],
    "tests/libs/kestrel_wire": [WIRE],
    "tests/libs/kestrel_recording": [RECORDING, WIRE],
    "tests/workbench": HOST + WORKBENCH + ["tests/support"],
    "tests/workbench/outlets/mqtt": HOST + [SENDING, "workbench/outlets/mqtt", "tests/support"],
    "tests/workbench/outlets/igtl": HOST + [SENDING, "workbench/outlets/igtl"],
    "tests/simulator": [WIRE, SDK] + SIMULATOR,
    "tests/recording": ["recording", RECORDING, WIRE],
    # Windows of all rooms side by side.
    "tests/windows": TEST_HOST + PLUGIN + ["probecheck", WIRE] + WORKBENCH
                     + ["tests/SourceFiles", "tests/general", "tests/probecheck",
                        "tests/workbench"],
    # Real processes: what is loaded or started is not included.
    "tests/end_to_end": HOST + WORKBENCH + ["tests/support"],
    "soak": HOST + WORKBENCH,
    "scripts": HOST + WORKBENCH,
    "benchmarks/sdk": [SDK],
    "benchmarks/points": ["probecheck", PROBE, "tests/probecheck"],
    "benchmarks/probe": [PROBE, "tests/libs/kestrel_probe"],
    "benchmarks/probecheck": TEST_HOST + ["probecheck", PROBE, "tests/probecheck",
                                          "tests/libs/kestrel_probe"],
    "benchmarks/display": PLUGIN + TEST_HOST + ["tests/SourceFiles"],
    "benchmarks/scale": HOST + WORKBENCH + SIMULATOR,
    "benchmarks/recording": [WIRE],
    "benchmarks/workbench": HOST + WORKBENCH,
    "fuzz": [],
    "fuzz/sdk": [SDK, "tests/libs/kestrel_sdk"],
    "fuzz/recording": [RECORDING, WIRE],
    "fuzz/simulator": [WIRE, SDK] + SIMULATOR,
    "fuzz/workbench": [WIRE, SDK, "workbench/controller", SENDING],
}

# Rooms with headers of their own that nobody else may include: these are the ones for everybody.
PUBLIC_HEADERS = {
    SDK: ["KestrelAngles.h", "KestrelDatatypes.h", "KestrelParse.h", "KestrelParser.h",
          "KestrelPick.h"],
    PROBE: ["PivotFit.h", "PointCapture.h", "TipSolver.h", "Verdict.h"],
}

# Qt's modules that a room may use; where no room or folder above is named, all of them.
QT_MODULES = {
    CONTRACT: ["QtCore", "QtWidgets"],
    "general": ["QtCore", "QtGui", "QtWidgets"],
    "SourceFiles": ["QtCore", "QtGui", "QtWidgets"],
    "probecheck": ["QtCore", "QtGui", "QtWidgets"],
    "probecheck/sounds": ["QtCore", "QtMultimedia"],
    "libs": [],
    "simulator": ["QtCore", "QtNetwork"],
    "simulator/words": [],
    "simulator/geometry": [],
    "simulator/controller": [],
    "recording": [],
    "python": [],
    "tests/libs": [],
    "tests/simulator": ["QtCore", "QtNetwork", "QtTest"],
}

# What a room may include besides Qt and C++'s own library; where no room or folder above is named,
# anything.
OTHER_LIBRARIES = {
    SDK: ["fast_float/"],
    PROBE: ["Eigen/"],
    WIRE: [],
    RECORDING: [],
    "python": ["pybind11/"],
    "simulator/geometry": ["Eigen/"],
    "simulator/words": ["Eigen/"],
    "simulator/controller": ["Eigen/"],
}
