"""Builds the wheel for pip: what CMake makes, zipped.

With a backend of its own the package needs nothing from a registry to be built. CMake's own variables of the
environment count, such as CMAKE_BUILD_TYPE.
"""

import base64
import hashlib
import os
import re
import subprocess
import sys
import sysconfig
import tempfile
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))


def _version():
    with open(os.path.join(HERE, "..", "cmake", "KestrelVersion.cmake"), encoding="utf-8") as file:
        return re.search(r"set\(KESTREL_VERSION (\S+)\)", file.read())[1]


def _metadata():
    return (
        "Metadata-Version: 2.1\n"
        "Name: kestrel-sdk\n"
        f"Version: {_version()}\n"
        "Summary: Tracking data, live and recorded, with NumPy\n"
        "Requires-Python: >=3.10\n"
        "Requires-Dist: numpy\n")


def _tag():
    python = f"cp{sys.version_info.major}{sys.version_info.minor}"
    return f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"


def _build(folder):
    subprocess.run(["cmake", "-S", HERE, "-B", folder, f"-DKESTREL_PYTHON={sys.executable}"], check=True)
    subprocess.run(["cmake", "--build", folder, "--parallel", "--target", "kestrel_python"], check=True)


def _package_files(folder):
    """Name in the wheel and content of each file of the package."""
    package = os.path.join(folder, "kestrel_sdk")
    for name in sorted(os.listdir(package)):
        if name.endswith((".py", ".pyi", ".typed", sysconfig.get_config_var("EXT_SUFFIX"))):
            with open(os.path.join(package, name), "rb") as file:
                yield f"kestrel_sdk/{name}", file.read()


def _record_line(name, content):
    digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
    return f"{name},sha256={digest},{len(content)}\n"


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    about = f"kestrel_sdk-{_version()}.dist-info"
    with tempfile.TemporaryDirectory() as folder:
        _build(folder)
        files = list(_package_files(folder))
    files.append((f"{about}/METADATA", _metadata().encode()))
    files.append((f"{about}/WHEEL", ("Wheel-Version: 1.0\nGenerator: kestrel\nRoot-Is-Purelib: false\n"
                                     f"Tag: {_tag()}\n").encode()))
    record = "".join(_record_line(*file) for file in files) + f"{about}/RECORD,,\n"
    files.append((f"{about}/RECORD", record.encode()))
    wheel = f"kestrel_sdk-{_version()}-{_tag()}.whl"
    with zipfile.ZipFile(os.path.join(wheel_directory, wheel), "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in files:
            archive.writestr(zipfile.ZipInfo(name), content, zipfile.ZIP_DEFLATED)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    raise NotImplementedError("a checkout is needed: the libraries stand beside this folder")
