"""Builds wheels: CMake builds and installs the module, this packs what it has installed.

The wheel belongs to one Python and to the libraries of the system that built it; it takes none of
them along.
"""

import base64
import hashlib
import os
import pathlib
import re
import subprocess
import sys
import sysconfig
import tarfile
import tempfile
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]


def get_requires_for_build_wheel(config_settings=None):
    return []


def get_requires_for_build_sdist(config_settings=None):
    return []


def _version():
    text = (ROOT / "CMakeLists.txt").read_text()
    return re.search(r"project\(Quorvane VERSION ([\d.]+)", text).group(1)


def _metadata():
    return "\n".join([
        "Metadata-Version: 2.1", "Name: quorvane", f"Version: {_version()}",
        "Summary: Analysis of sedimentation-equilibrium experiments",
        "License: GPL-3.0-or-later", "Requires-Python: >=3.9", "Requires-Dist: numpy",
        "Provides-Extra: frames", 'Requires-Dist: pandas; extra == "frames"',
        "Provides-Extra: figures", 'Requires-Dist: matplotlib; extra == "figures"',
        "Provides-Extra: cluster", 'Requires-Dist: distributed; extra == "cluster"', "",
    ])


def _install(build, stage):
    """CMake into `build`, the package into `stage`/quorvane."""
    configure = ["cmake", "-S", str(ROOT), "-B", str(build), "-DCMAKE_BUILD_TYPE=Release",
                 f"-DPython3_EXECUTABLE={sys.executable}", "-DQUORVANE_PYTHON_FOLDER=.",
                 "-DQUORVANE_TESTS=OFF", "-DQUORVANE_BENCH=OFF", "-DQUORVANE_TOOLS=OFF",
                 "-DQUORVANE_WARNINGS_AS_ERRORS=OFF"]
    targets = ["quorvane_python_engine", "quorvane_python_drawing"]
    subprocess.run(configure, check=True)
    subprocess.run(["cmake", "--build", str(build), "--parallel", "2", "--target", *targets],
                   check=True)
    subprocess.run(["cmake", "--install", str(build), "--component", "python", "--strip",
                    "--prefix", str(stage)], check=True)


def build_wheel(wheel_directory, config_settings=None, metadata_directory=None):
    python = f"cp{sys.version_info[0]}{sys.version_info[1]}"
    tag = f"{python}-{python}-{re.sub('[-.]', '_', sysconfig.get_platform())}"
    info = f"quorvane-{_version()}.dist-info"
    with tempfile.TemporaryDirectory() as folder:
        # QUORVANE_WHEEL_BUILD: a build folder to be used again
        build = os.environ.get("QUORVANE_WHEEL_BUILD", os.path.join(folder, "build"))
        stage = pathlib.Path(folder, "stage")
        _install(build, stage)
        files = {str(path.relative_to(stage)): path.read_bytes()
                 for path in sorted(stage.rglob("*")) if path.is_file()}
    files[f"{info}/METADATA"] = _metadata().encode()
    files[f"{info}/WHEEL"] = (f"Wheel-Version: 1.0\nGenerator: quorvane\n"
                              f"Root-Is-Purelib: false\nTag: {tag}\n").encode()
    record = []
    for name, content in files.items():
        digest = base64.urlsafe_b64encode(hashlib.sha256(content).digest()).rstrip(b"=").decode()
        record.append(f"{name},sha256={digest},{len(content)}\n")
    files[f"{info}/RECORD"] = ("".join(record) + f"{info}/RECORD,,\n").encode()
    wheel = f"quorvane-{_version()}-{tag}.whl"
    with zipfile.ZipFile(os.path.join(wheel_directory, wheel), "w", zipfile.ZIP_DEFLATED) as out:
        for name, content in files.items():
            out.writestr(name, content)
    return wheel


def build_sdist(sdist_directory, config_settings=None):
    """All files that git knows."""
    name = f"quorvane-{_version()}"
    listed = subprocess.run(["git", "-C", str(ROOT), "ls-files", "-z"], check=True,
                            capture_output=True).stdout.decode().split("\0")
    path = os.path.join(sdist_directory, name + ".tar.gz")
    with tempfile.NamedTemporaryFile("w", suffix="PKG-INFO", delete=False) as text:
        text.write(_metadata())
    with tarfile.open(path, "w:gz") as out:
        for file in filter(None, listed):
            out.add(ROOT / file, f"{name}/{file}", recursive=False)
        out.add(text.name, f"{name}/PKG-INFO")
    os.unlink(text.name)
    return os.path.basename(path)
