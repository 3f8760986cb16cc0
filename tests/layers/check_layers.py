"""Checks that includes run downward only and that the core stays free of Qt and of the platform.

Usage: check_layers.py <root of the project>
"""
import pathlib
import re
import sys

CORE_ORDER = {
    "common": [],
    "decode": ["common"],
    "optics": ["common"],
    "calibration": ["common", "decode", "optics"],
    "files": ["common", "decode", "optics", "calibration"],
    "graphs": ["common", "decode", "optics", "calibration"],
}
HOST_ORDER = {
    "platform": ["common", "files"],
    "link": ["common", "decode", "optics", "calibration", "platform", "simulator"],
    "operations": ["common", "decode", "calibration", "link"],
    "app": list(CORE_ORDER) + ["platform", "link", "operations", "simulator"],
}
FORMS = {
    "graphs/forms": ["common", "graphs"],
    "app/program": ["common", "app", "app/forms"],
    "app/forms": list(CORE_ORDER) + ["platform", "link", "operations", "simulator", "app", "graphs/forms"],
}
ALLOWED = {**CORE_ORDER, **HOST_ORDER, **FORMS}
INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')
NOT_IN_CORE = re.compile(r"^(Q[A-Za-z]+|qcustomplot\.h|unistd\.h|fcntl\.h|termios\.h|sys/.*|windows\.h|coroutine)$")


def complaints_of(path, root):
    folder = str(path.parent.relative_to(root / "src"))
    if folder not in ALLOWED:
        yield f"{path}: the folder '{folder}' has no row in the table of layers"
        return
    for number, line in enumerate(path.read_text().splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        bracket, target = match.groups()
        if bracket == '"':
            other = str(pathlib.PurePosixPath(target).parent)
            if other != folder and other not in ALLOWED[folder]:
                yield f"{path}:{number}: {folder} may not include {target}"
        elif folder in CORE_ORDER and NOT_IN_CORE.match(target):
            yield f"{path}:{number}: the core may not include <{target}>"
        elif folder in HOST_ORDER and re.match(r"^(QWidget|QApplication|qcustomplot\.h|QtWidgets.*)$", target):
            yield f"{path}:{number}: the host layer has no widgets: <{target}>"


def simulator_complaints(root):
    for path in (root / "simulator").rglob("*"):
        if path.suffix not in (".cpp", ".h"):
            continue
        for number, line in enumerate(path.read_text().splitlines(), 1):
            match = INCLUDE.match(line)
            if match and match[1] == '"' and not match[2].startswith("simulator/"):
                yield f"{path}:{number}: the simulated instruments share no code with the program: {match[2]}"


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [p for p in (root / "src").rglob("*") if p.suffix in (".cpp", ".h")]
    found = [c for p in sorted(sources) for c in complaints_of(p, root)]
    found += simulator_complaints(root)
    print("\n".join(found) if found else f"{len(sources)} files, all includes run downward")
    return 1 if found or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
