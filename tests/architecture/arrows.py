"""Who may know whom: the rooms of this repository and the arrows between them."""

CONTRACT = "host_api"
SDK = "libs/kestrel_sdk"
PROBE = "libs/kestrel_probe"
WIRE = "libs/kestrel_wire"
RECORDING = "libs/kestrel_recording"
GENERAL = ["general", "general/host", "general/widgets"]
PLUGIN = ["SourceFiles", *GENERAL, CONTRACT, SDK, "ui"]
RECORD, FILES = "probecheck/points/record", "probecheck/points/files"
PROBECHECK = ["probecheck", "probecheck/data", "probecheck/tipcheck", "probecheck/points",
              RECORD, FILES]
SENDING = "workbench/outlets/sending"
FRAMES = "workbench/outlets/sending/frames"
OUTLETS = ["workbench/outlets", SENDING, FRAMES]
CONTROLLER = ["workbench/controller/command", "workbench/controller/data", "workbench/controller",
              "workbench/controller/tools", "workbench/controller/simulator"]
COMMAND, DATA, SESSION, TOOLS, SIMULATED = CONTROLLER
LOOK, SETTINGS, DOCKS = (f"workbench/window/{room}" for room in ("look", "settings", "docks"))
READOUT, TABLES = (f"workbench/window/{room}" for room in ("readout", "recording"))
WINDOW = ["workbench/window", LOOK, SETTINGS, DOCKS, READOUT, TABLES] + [
    f"workbench/window/{room}" for room in ("dialogs", "log", "plot", "sending", "state")]
WORKBENCH = ["workbench", "workbench/text", *CONTROLLER, "workbench/modules", *OUTLETS, *WINDOW]
SIMULATOR = ["simulator", "simulator/words", "simulator/geometry", "simulator/controller",
             "simulator/controller/scene"]
HOST = [CONTRACT, SDK, WIRE, RECORDING]
TEST_HOST = ["tests/support", CONTRACT, SDK]

# Room: the other rooms that it may know; no arrow leads back to where it came from. A folder belongs
# to the longest name that fits; a source in a folder without a room is an error. A room that is not
# there yet has its rule already.
KNOWS = {
    CONTRACT: [],
    "general": ["general/host", "general/widgets", CONTRACT, "ui"],
    "general/host": [CONTRACT, SDK],
    "general/widgets": ["general/host", CONTRACT],
    "SourceFiles": [*GENERAL, CONTRACT, SDK, PROBE, "ui"],
    "probecheck": [*GENERAL, CONTRACT, SDK, PROBE, "probecheck/data", "probecheck/points",
                   "probecheck/tipcheck"],
    "probecheck/data": [*GENERAL, CONTRACT, SDK],
    "probecheck/points": [*GENERAL, CONTRACT, PROBE, "probecheck/data", RECORD, FILES,
                          "probecheck/sounds"],
    RECORD: [*GENERAL, PROBE],
    FILES: [*GENERAL, RECORD],
    "probecheck/tipcheck": [*GENERAL, CONTRACT, PROBE, "probecheck/data"],
    "probecheck/sounds": [],
    SDK: [],
    PROBE: [],
    WIRE: [SDK],
    RECORDING: [WIRE, SDK],
    "workbench/text": HOST,
    "workbench/outlets": HOST,
    FRAMES: HOST,
    SENDING: HOST + ["workbench/outlets", FRAMES],
    # Each is loaded when it is wanted: nobody else includes them.
    "workbench/outlets/mqtt": HOST + OUTLETS,
    "workbench/outlets/igtl": HOST + OUTLETS,
    COMMAND: HOST,
    DATA: HOST + [COMMAND, *OUTLETS],
    SESSION: HOST + ["workbench/text", COMMAND, DATA],
    TOOLS: HOST + ["workbench/text", SENDING, COMMAND, DATA, SESSION],
    SIMULATED: HOST + [COMMAND, DATA, SESSION],
    "workbench/modules": HOST + ["workbench/text", *CONTROLLER, *OUTLETS],
    LOOK: [],
    SETTINGS: [LOOK, "workbench/text", COMMAND, "workbench/modules"],
    DOCKS: [LOOK],
    "workbench/window/log": [LOOK, DOCKS, "workbench/text", *CONTROLLER, "workbench/outlets"],
    "workbench/window/state": [LOOK, DOCKS, "workbench/text", *CONTROLLER],
    READOUT: HOST + [LOOK, *CONTROLLER, FRAMES, "workbench/modules"],
    TABLES: [LOOK, "workbench/text", *CONTROLLER, "workbench/outlets"],
    "workbench/window/plot": HOST + [LOOK, READOUT, "workbench/text", *CONTROLLER, *OUTLETS,
                                     "workbench/modules"],
    "workbench/window/sending": [LOOK, SETTINGS, "workbench/text", *CONTROLLER, SENDING],
    "workbench/window/dialogs": [LOOK, "workbench/text", *CONTROLLER, SENDING, "workbench/modules"],
    "workbench/window": HOST + ["workbench/text", *CONTROLLER, "workbench/modules", *OUTLETS,
                                *WINDOW[1:]],
    "workbench": HOST + WORKBENCH,
    "simulator/geometry": [PROBE],
    "simulator/words": [WIRE, SDK, "simulator/geometry"],
    "simulator/controller/scene": ["simulator/words", "simulator/geometry"],
    "simulator/controller": [WIRE, SDK, "simulator/words", "simulator/geometry",
                             "simulator/controller/scene"],
    "simulator": [WIRE, SDK] + SIMULATOR,
    "recording": [WIRE, RECORDING],
    "python": [SDK, PROBE, WIRE, RECORDING],
    "tests/support": [CONTRACT, WIRE],
    "tests/host_api": [CONTRACT],
    "tests/general": TEST_HOST + GENERAL + ["ui"],
    "tests/SourceFiles": TEST_HOST + PLUGIN + ["tests/general"],
    "tests/probecheck": TEST_HOST + PROBECHECK + ["probecheck/sounds", *GENERAL, PROBE],
    "tests/libs/kestrel_sdk": [SDK],
    "tests/libs/kestrel_probe": [PROBE],
    "tests/libs/kestrel_wire": [WIRE],
    "tests/libs/kestrel_recording": [RECORDING, WIRE],
    "tests/workbench": HOST + WORKBENCH + ["tests/support"],
    "tests/workbench/outlets/mqtt": HOST + [SENDING, FRAMES, "workbench/outlets/mqtt", "tests/support"],
    "tests/workbench/outlets/igtl": HOST + [SENDING, FRAMES, "workbench/outlets/igtl"],
    "tests/simulator": [WIRE, SDK] + SIMULATOR,
    "tests/recording": ["recording", RECORDING, WIRE],
    # Windows of all rooms side by side.
    "tests/windows": TEST_HOST + PLUGIN + PROBECHECK + [WIRE] + WORKBENCH
                     + ["tests/SourceFiles", "tests/general", "tests/probecheck",
                        "tests/workbench"],
    # Real processes: what is loaded or started is not included.
    "tests/end_to_end": HOST + WORKBENCH + ["tests/support"],
    "soak": HOST + WORKBENCH,
    "scripts": HOST + WORKBENCH,
    "benchmarks": [],
    "benchmarks/sdk": [SDK],
    "benchmarks/points": PROBECHECK + [PROBE, "tests/probecheck"],
    "benchmarks/probe": [PROBE, "tests/libs/kestrel_probe"],
    "benchmarks/probecheck": TEST_HOST + PROBECHECK + [PROBE, "tests/probecheck",
                                                       "tests/libs/kestrel_probe"],
    "benchmarks/display": ["benchmarks"] + PLUGIN + TEST_HOST + ["tests/SourceFiles"],
    "benchmarks/scale": HOST + WORKBENCH + SIMULATOR,
    "benchmarks/recording": [WIRE, "benchmarks"],
    "benchmarks/workbench": HOST + WORKBENCH + ["benchmarks"],
    "fuzz": [],
    "fuzz/sdk": [SDK, "tests/libs/kestrel_sdk"],
    "fuzz/recording": [RECORDING, WIRE],
    "fuzz/simulator": [WIRE, SDK] + SIMULATOR,
    "fuzz/workbench": [WIRE, SDK, COMMAND, SENDING, FRAMES],
}

# Whose sub-rooms each have a rule of their own, so that a new one cannot hide in the room above it.
RULED = ["SourceFiles", "general", "probecheck", "workbench", "simulator", "recording"]

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
