"""What the guide shows works as it stands there."""

import os
import re
import subprocess
from pathlib import Path

import numpy as np
from samples import pivot_recording

GUIDE = Path(__file__).resolve().parents[2] / "docs" / "python.md"
BLOCKS = re.findall(r"```python\n(.*?)```", GUIDE.read_text(encoding="utf-8"), re.S)


def run(block, names):
    exec(compile(block, str(GUIDE), "exec"), names)


def test_recordings_tips_and_lines(tmp_path, monkeypatch, capsys):
    monkeypatch.chdir(tmp_path)
    pivot_recording(tmp_path / "probe.kestrel", np.array([0.0, 0.1, 0.0]), 0.02)
    names = {}
    recording, _, _, tip, lines = BLOCKS
    run(recording, names)
    assert capsys.readouterr().out.startswith("1.14.0 2026-11-22T03:40:12.345\n5.99 [")
    run(tip, names)
    assert "Verdict.CONFORMS" in capsys.readouterr().out
    run(lines, names)
    assert capsys.readouterr().out == "[10. 20. 30.]\n12 [1. 2. 3.]\n"


def test_live_frames_of_a_simulated_controller(capsys):
    program = os.path.join(os.environ["KESTREL_BUILD"], "bin", "kestrel-simulator")
    with subprocess.Popen([program, "--port", "0"], stdout=subprocess.PIPE, text=True) as simulator:
        try:
            port = re.fullmatch(r"listening on \S*:(\d+)\n", simulator.stdout.readline())[1]
            _, _, live, _, _ = BLOCKS
            assert "47300" in live and "timeout=5" in live
            # On a busy computer the simulated controller may be late.
            run(live.replace("47300", port).replace("timeout=5", "timeout=60"), {})
        finally:
            simulator.terminate()
    out = capsys.readouterr().out
    assert out.count("-> kestrel2 ok\n") == 4 and "Tool(id=0, quality=" in out


def test_a_loop_over_live_frames():
    _, loop, *_ = BLOCKS
    assert loop.startswith("for frame in kestrel_sdk.listen(5000):")
    names = {"kestrel_sdk": type("", (), {"listen": staticmethod(lambda port: iter([frame_of_one_tool()]))})}
    run(loop, names)


def frame_of_one_tool():
    import kestrel_sdk
    return kestrel_sdk.Parser().parse_frame("fr 1\n6dmt 1 [0 1.0 1][1 2 3][1 0 0 0 1 0 0 0 1]")
