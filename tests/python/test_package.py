"""What is delivered: stubs, documentation, examples, what pip makes."""

import ast
import importlib.util
import inspect
import os
import re
import shutil
import subprocess
import sys
import sysconfig
from pathlib import Path

import kestrel_sdk
import numpy as np
import pytest
from kestrel_sdk import _native
from samples import pivot_recording

ROOT = Path(__file__).resolve().parents[2]
PYTHON = ROOT / "python"
PATIENCE = 600


def run_example(name, *arguments):
    return subprocess.run([sys.executable, PYTHON / "examples" / name, *map(str, arguments)],
                          capture_output=True, text=True, timeout=PATIENCE)


def names_of(body):
    return {node.name: node for node in body if isinstance(node, (ast.FunctionDef, ast.ClassDef))}


def arguments_of(thing):
    """As pybind11 tells them in the first line of the documentation, "self" first."""
    return re.findall(r"(\w+): ", thing.__doc__.split("->")[0])


def test_the_stubs_are_those_of_the_module():
    stub = names_of(ast.parse((PYTHON / "kestrel_sdk" / "_native.pyi").read_text()).body)
    public = {name for name in dir(_native) if not name.startswith("_")}
    assert public == set(stub) | {"SLIP_OVER_RESIDUAL"}
    functions = [(stub["judge"], _native.judge)]
    for name, node in stub.items():
        if isinstance(node, ast.ClassDef):
            told, members = names_of(node.body), vars(getattr(_native, name))
            assert set(told) == {member for member in members if member[0] != "_" or member == "__init__"}
            functions += [(told[member], getattr(getattr(_native, name), member)) for member in told]
    for node, function in functions:
        assert arguments_of(function) == [argument.arg for argument in node.args.args], node.name


def test_everything_public_is_documented():
    for name in kestrel_sdk.__all__:
        thing = getattr(kestrel_sdk, name)
        if not inspect.isclass(thing):
            assert name == "POSE" or inspect.getdoc(thing)
            continue
        assert inspect.getdoc(thing), name
        for member, value in vars(thing).items():
            if not member.startswith("_") and (inspect.isfunction(value) or isinstance(value, property)):
                assert inspect.getdoc(value), f"{name}.{member}"


def test_the_example_plots_a_recording(tmp_path):
    path = pivot_recording(tmp_path / "a", np.array([0, 0, 180.0]), 0.05)
    picture = tmp_path / "plot.png"
    ran = run_example("plot_recording.py", path, "M1", picture)
    assert ran.returncode == 0, ran.stderr
    assert ran.stdout == "M1: 600 poses, 600 tracked\n"
    assert picture.read_bytes().startswith(b"\x89PNG") and picture.stat().st_size > 10000


@pytest.mark.parametrize("error, code, words", [
    ((0.1, 0, 0), 0, "tolerance 0.500 mm: conforms"),
    ((0, 2, 0), 1, "tolerance 0.500 mm: does not conform"),
])
def test_the_example_checks_a_tip(tmp_path, error, code, words):
    path = pivot_recording(tmp_path / "a", np.array(error, float), 0.02)
    ran = run_example("check_tip.py", path)
    assert ran.returncode == code and words in ran.stdout, ran.stdout + ran.stderr


def test_an_example_tells_what_is_wrong(tmp_path):
    (tmp_path / "a").write_text("something\n")
    ran = run_example("check_tip.py", tmp_path / "a")
    assert ran.returncode == 1 and "line 1: not a recording of a known format" in ran.stderr
    assert "Traceback" not in ran.stderr


def test_pip_installs_a_checkout(tmp_path):
    """Everything is compiled for it, without optimisation and with the compiler's cache; no network is asked."""
    if not importlib.util.find_spec("pip"):
        pytest.fail("python3-pip is not installed")
    environment = {name: value for name, value in os.environ.items() if name != "PYTHONPATH"}
    options = {"CMAKE_BUILD_TYPE": "None"}
    if shutil.which("ccache"):
        options["CMAKE_CXX_COMPILER_LAUNCHER"] = "ccache"
    installed = subprocess.run(
        [sys.executable, "-m", "pip", "install", "--no-index", "--no-deps", "--no-cache-dir",
         "--disable-pip-version-check", "--root-user-action", "ignore", "--target", tmp_path / "site", PYTHON],
        env=environment | options, timeout=PATIENCE, capture_output=True, text=True)
    assert installed.returncode == 0, installed.stdout + installed.stderr
    files = sorted(file.name for file in (tmp_path / "site" / "kestrel_sdk").iterdir() if file.is_file())
    native = "_native" + sysconfig.get_config_var("EXT_SUFFIX")
    assert files == sorted([native] + [file.name for file in (PYTHON / "kestrel_sdk").iterdir() if file.is_file()])
    told = ("import kestrel_sdk as k, importlib.metadata as m; "
            "print(k.__file__, m.version('kestrel-sdk'), k.Parser().tools)")
    shown = subprocess.run([sys.executable, "-c", told], check=True, capture_output=True, text=True,
                           timeout=PATIENCE,
                           env=dict(environment, PYTHONPATH=str(tmp_path / "site"))).stdout.split()
    assert shown[0].startswith(str(tmp_path / "site"))
    assert f"set(KESTREL_VERSION {shown[1]})" in (ROOT / "cmake" / "KestrelVersion.cmake").read_text()
    assert shown[2] == "[]"
