#!/usr/bin/env python3
"""The check of the includes finds a forbidden one of each kind, planted in a copy of the sources.

    test_check_includes.py SOURCE_FOLDER QT_INCLUDE_FOLDER
"""

import os
import shutil
import sys
import tempfile
import unittest

from arrows import KNOWS
from check_includes import SOURCE, check, circle

REPOSITORY, QT = sys.argv.pop(1), sys.argv.pop(1)

# Folder of a new source, its include, what is said of it.
FORBIDDEN = [
    # However it is written.
    ("workbench/window", '"SourceFiles/mtresultdlg.h"', "workbench/window may not know SourceFiles"),
    ("workbench/window", '"../../SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("workbench", '"../SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("workbench", "<SourceFiles/mtresultdlg.h>", "may not know SourceFiles"),
    ("workbench", "<mtresultdlg.h>", "may not know SourceFiles"),
    ("workbench", '"mtresultdlg.h"', "may not know SourceFiles"),
    ("workbench", '"host_api/../SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("workbench", '"../../elsewhere/SourceFiles/mtresultdlg.h"', "no such file"),
    ("workbench", '"../../Lib/Tables.h"', "private to libs/kestrel_sdk"),
    ("workbench", '"ui_mtresultdlg.h"', "may not know ui"),
    ("workbench", '/* why */ "SourceFiles/mtresultdlg.h" // because', "may not know SourceFiles"),
    ("workbench", '"Source\\\nFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("workbench", '"planted_link.h"', "may not know SourceFiles"),
    ("workbench", "PLANTED", "neither a header in quotes"),
    ("workbench", '"SourceFiles/nosuchfile.h"', "no such file"),
    # From room to room.
    ("SourceFiles", '"workbench/options.h"', "may not know workbench"),
    ("SourceFiles", "<Lib/Tables.h>", "private to libs/kestrel_sdk"),
    ("SourceFiles", '"libs/kestrel_wire/reply.h"', "may not know libs/kestrel_wire"),
    ("SourceFiles", '"probecheck/planted.h"', "may not know probecheck"),
    ("general", '"SourceFiles/bodycount.h"', "may not know SourceFiles"),
    ("probecheck", '"SourceFiles/bodycount.h"', "may not know SourceFiles"),
    ("probecheck", '"libs/kestrel_probe/planted_private.h"', "private to libs/kestrel_probe"),
    ("host_api", '"general/widgets/modalrun.h"', "may not know general"),
    ("libs/kestrel_sdk/Lib", '"libs/kestrel_wire/reply.h"', "may not know libs/kestrel_wire"),
    ("libs/kestrel_probe", "<KestrelParser.h>", "may not know libs/kestrel_sdk"),
    ("libs/kestrel_wire", '"workbench/options.h"', "may not know workbench"),
    ("simulator", '"workbench/options.h"', "may not know workbench"),
    ("simulator", '"host_api/iomanager.h"', "may not know host_api"),
    ("recording", '"simulator/options.h"', "may not know simulator"),
    ("python", '"host_api/iomanager.h"', "may not know host_api"),
    ("python/src", "<Eigen/Dense>", "may not know this library"),
    # From sub-room to sub-room.
    ("workbench/text", '"workbench/controller/command/channelresult.h"', "may not know workbench/controller"),
    ("workbench/text", '"../options.h"', "may not know workbench"),
    ("workbench/outlets", '"workbench/text/logmodel.h"', "may not know workbench/text"),
    ("workbench/controller", '"workbench/modules/hostio.h"', "may not know workbench/modules"),
    ("workbench/modules", '"workbench/window/mainwindow.h"', "may not know workbench/window"),
    ("workbench/window", '"workbench/options.h"', "may not know workbench"),
    ("simulator/geometry", '"simulator/words/text.h"', "may not know simulator/words"),
    ("simulator/words", '"simulator/controller/scene/scene.h"', "may not know simulator/controller"),
    ("simulator/controller", '"simulator/options.h"', "may not know simulator"),
    ("general/host", '"general/leavablethread.h"', "general/host may not know general"),
    ("general/host", '"../widgets/modalrun.h"', "may not know general/widgets"),
    ("general/widgets", '"general/CountdownDlg.h"', "may not know general"),
    ("probecheck/data", '"probecheck/probecheckmodule.h"', "may not know probecheck"),
    ("probecheck/points", '"probecheck/tipcheck/tipcheck.h"', "may not know probecheck/tipcheck"),
    ("probecheck/points", '"../probecheckmodule.h"', "may not know probecheck"),
    ("probecheck/points/record", '"probecheck/points/files/pointjson.h"',
     "may not know probecheck/points/files"),
    ("probecheck/points/files", '"probecheck/points/pointlistmodel.h"',
     "may not know probecheck/points"),
    ("probecheck/points/files", '"probecheck/data/linetap.h"', "may not know probecheck/data"),
    ("probecheck/tipcheck", '"probecheck/points/capture.h"', "may not know probecheck/points"),
    ("probecheck/tipcheck", "<tipcheck/../probecheckmodule.h>", "may not know probecheck"),
    ("simulator/controller/scene", '"simulator/controller/calibration.h"',
     "simulator/controller/scene may not know simulator/controller"),
    ("workbench/outlets/sending/frames", '"workbench/outlets/sending/outlet.h"',
     "frames may not know workbench/outlets/sending"),
    ("workbench/controller/command", '"workbench/controller/data/bootclock.h"',
     "may not know workbench/controller/data"),
    ("workbench/controller/command", '"../controllersession.h"', "may not know workbench/controller"),
    ("workbench/controller/data", '"workbench/controller/measurementmonitor.h"',
     "workbench/controller/data may not know workbench/controller"),
    ("workbench/controller", '"workbench/controller/tools/toollines.h"',
     "workbench/controller may not know workbench/controller/tools"),
    ("workbench/controller", '"simulator/simulatorprocess.h"',
     "may not know workbench/controller/simulator"),
    ("workbench/controller/tools", '"workbench/controller/simulator/simulatorwords.h"',
     "may not know workbench/controller/simulator"),
    ("workbench/controller/simulator", '"workbench/controller/tools/toolfacts.h"',
     "may not know workbench/controller/tools"),
    ("workbench/window/look", '"workbench/window/state/banner.h"',
     "may not know workbench/window/state"),
    ("workbench/window/settings", '"workbench/window/docks/docktitle.h"',
     "may not know workbench/window/docks"),
    ("workbench/window/docks", '"ui_mainwindow.h"', "may not know workbench/window"),
    ("workbench/window/docks", '"workbench/window/settings/windowsettings.h"',
     "may not know workbench/window/settings"),
    ("workbench/window/log", '"workbench/window/state/banner.h"',
     "may not know workbench/window/state"),
    ("workbench/window/state", '"workbench/window/log/logdock.h"',
     "may not know workbench/window/log"),
    ("workbench/window/recording", '"workbench/window/statewords.h"',
     "may not know workbench/window"),
    ("workbench/window/readout", '"workbench/window/plot/tipring.h"',
     "may not know workbench/window/plot"),
    ("workbench/window/plot", '"workbench/window/mainwindow.h"', "may not know workbench/window"),
    ("workbench/window/sending", '"workbench/window/dialogs/guidedialog.h"',
     "may not know workbench/window/dialogs"),
    ("workbench/window/dialogs", '"../mainwindow.h"', "may not know workbench/window"),
    ("workbench/window/planted", "<vector>", "no rule says"),
    ("general/planted", "<vector>", "no rule says"),
    # Libraries.
    ("libs/kestrel_sdk/Lib", "<QString>", "may not know QtCore"),
    ("libs/kestrel_sdk/Lib", "<qstring.h>", "may not know QtCore"),
    ("libs/kestrel_sdk/Lib", "<Eigen/Core>", "may not know this library"),
    ("libs/kestrel_sdk/Lib", "<sys/socket.h>", "may not know this library"),
    ("libs/kestrel_probe", "<QtCore/QString>", "may not know QtCore"),
    ("libs/kestrel_probe", "<fast_float/fast_float.h>", "may not know this library"),
    ("simulator", "<QtWidgets>", "may not know QtWidgets"),
    ("simulator", "<QColor>", "may not know QtGui"),
    ("simulator/controller", "<QString>", "may not know QtCore"),
    ("SourceFiles", "<QTcpSocket>", "may not know QtNetwork"),
    # The folders that are no products.
    ("tests/workbench/window", '"SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("tests/SourceFiles/settings", '"workbench/options.h"', "may not know workbench"),
    ("tests/libs/kestrel_sdk", '"../../../libs/kestrel_sdk/Lib/Tables.h"', "private to"),
    ("tests/support", '"SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("tests/end_to_end", '"SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("scripts/pictures", '"SourceFiles/mtresultdlg.h"', "may not know SourceFiles"),
    ("fuzz/simulator", '"workbench/options.h"', "may not know workbench"),
    ("fuzz", '"host_api/iomanager.h"', "may not know host_api"),
    ("benchmarks/workbench", '"simulator/options.h"', "may not know simulator"),
    ("benchmarks/scale", "<SourceFiles/mtresultdlg.h>", "may not know SourceFiles"),
    ("soak", '"simulator/options.h"', "may not know simulator"),
    ("planted_room", "<vector>", "no rule says"),
    ("tests", "<vector>", "no rule says"),
]

ALLOWED = [
    ("workbench/window", '"workbench/controller/command/channelresult.h"'),
    ("SourceFiles", '"ui_mtresultdlg.h"'),
    ("SourceFiles", "<KestrelParser.h>"),
    ("probecheck", '"general/widgets/modalrun.h"'),
    ("libs/kestrel_probe", "<Eigen/Core>"),
    ("simulator/geometry", '"libs/kestrel_probe/PivotFit.h"'),
    ("python", "<pybind11/pybind11.h>"),
    ("simulator", "<QTcpServer>"),
    ("tests/windows", '"SourceFiles/mtresultdlg.h"'),
]

PLANTED_HEADERS = ["probecheck/planted.h", "libs/kestrel_probe/planted_private.h"]


def sources_only(folder, names):
    hidden = ["build"] if os.path.samefile(folder, REPOSITORY) else []
    return [n for n in names if n in hidden or n.startswith(".") or not (
        os.path.isdir(os.path.join(folder, n)) or SOURCE.search(n) or n.endswith(".ui"))]


class CheckOfIncludes(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.folder.cleanup)
        cls.root = os.path.join(cls.folder.name, "copy")
        shutil.copytree(REPOSITORY, cls.root, ignore=sources_only)
        for header in PLANTED_HEADERS:
            if not os.path.exists(os.path.join(cls.root, header)):
                cls.write(header, "")
        os.symlink("../SourceFiles/numberglyphs.h", os.path.join(cls.root, "workbench/planted_link.h"))
        cls.untouched = check(cls.root, QT)[1]
        for number, (folder, include, _) in enumerate(FORBIDDEN):
            cls.write(f"{folder}/forbidden{number}.cpp", f"  #  include {include}\nint planted;\n")
        for number, (folder, include) in enumerate(ALLOWED):
            cls.write(f"{folder}/allowed{number}.cpp", f"#include {include}\n")
        cls.write("workbench/comment.cpp", '/*\n#include "SourceFiles/mtresultdlg.h"\n*/\n')
        cls.faults = check(cls.root, QT)[1]

    @classmethod
    def write(cls, path, text):
        path = os.path.join(cls.root, path)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def faults_of(self, source):
        return [fault for fault in self.faults if fault.startswith(source + ": ")]

    def test_the_sources_have_none(self):
        self.assertEqual(self.untouched, [])

    def test_each_forbidden_one_is_found(self):
        for number, (folder, include, said) in enumerate(FORBIDDEN):
            with self.subTest(folder=folder, include=include):
                faults = self.faults_of(f"{folder}/forbidden{number}.cpp")
                self.assertEqual(len(faults), 1, faults)
                self.assertIn(said, faults[0])

    def test_nothing_else_is_found(self):
        self.assertEqual(len(self.faults), len(FORBIDDEN), self.faults)

    def test_allowed_ones_are_not(self):
        for number, (folder, include) in enumerate(ALLOWED):
            with self.subTest(folder=folder, include=include):
                self.assertEqual(self.faults_of(f"{folder}/allowed{number}.cpp"), [])

    def test_no_arrow_leads_back(self):
        self.assertEqual(circle(KNOWS), [])

    def test_arrows_that_lead_back_are_found(self):
        for room, other in [("workbench/window/look", "workbench/window/state"),
                            ("workbench/controller/data", "workbench/controller"),
                            ("general/host", "general")]:
            with self.subTest(room=room, other=other):
                found = circle(dict(KNOWS, **{room: KNOWS[room] + [other]}))
                self.assertEqual(found[0], found[-1])
                self.assertIn(room, found)
                self.assertIn(other, found)

    def test_words_in_a_comment_are_none(self):
        self.assertEqual(self.faults_of("workbench/comment.cpp"), [])


if __name__ == "__main__":
    unittest.main()
