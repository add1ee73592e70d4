"""check_plists.py FOLDER: the property lists of the bundle for a Mac: well-formed, and saying what the system asks for."""
import plistlib
import re
import sys


def read(path):
    with open(path, "rb") as file:
        return re.sub(rb"\$\{([A-Z_]+)\}", rb"value of \1", file.read())


def complaints(folder):
    info = plistlib.loads(read(folder + "/Info.plist.in"))
    entitlements = plistlib.loads(read(folder + "/Quillo.entitlements"))
    expected = {"CFBundleURLTypes": [{"CFBundleTypeRole": "Viewer", "CFBundleURLName": "app.quillo.Quillo",
                                       "CFBundleURLSchemes": ["quillo"]}],
                "CFBundleIdentifier": "app.quillo.Quillo", "CFBundlePackageType": "APPL", "LSUIElement": True,
                "LSMinimumSystemVersion": "value of CMAKE_OSX_DEPLOYMENT_TARGET"}
    for key, value in expected.items():
        if info.get(key) != value:
            yield f"Info.plist.in: {key} is {info.get(key)!r}, not {value!r}"
    for key in ("CFBundleExecutable", "CFBundleIconFile", "CFBundleShortVersionString", "CFBundleVersion"):
        if not info.get(key):
            yield f"Info.plist.in: {key} is missing"
    # Without the text the system ends a program that asks another one to act.
    if not info.get("NSAppleEventsUsageDescription", "").strip():
        yield "Info.plist.in: NSAppleEventsUsageDescription says nothing"
    if entitlements != {"com.apple.security.automation.apple-events": True}:
        yield f"Quillo.entitlements: {sorted(entitlements)} is not what the program needs"


found = list(complaints(sys.argv[1]))
for complaint in found:
    print(complaint, file=sys.stderr)
sys.exit(bool(found))
