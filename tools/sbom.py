"""sbom.py PACKAGE.deb BUILD.buildinfo COMMIT: what a package is made of, as SPDX 2.3 in JSON, from what dpkg knows.

Three things are told of the package: what it needs where it is installed (its dependencies, as installed here), what was
there when it was built (the build's own record), and the symbols' font, which is in it.
"""
import datetime
import hashlib
import json
import re
import subprocess
import sys


def ask(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def identifier(*parts):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.-]", "-", "-".join(parts))


def described(name, version, architecture, source):
    """A Debian package, by the names that scanners look it up by."""
    arch = f"?arch={architecture}&distro=debian"
    return {"SPDXID": identifier("debian", name), "name": name, "versionInfo": version,
            "downloadLocation": "NOASSERTION", "filesAnalyzed": False, "licenseConcluded": "NOASSERTION",
            "licenseDeclared": "NOASSERTION", "copyrightText": "NOASSERTION", "sourceInfo": f"source package: {source}",
            "externalRefs": [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                              "referenceLocator": f"pkg:deb/debian/{name}@{version.replace('+', '%2B')}{arch}"}]}


def installed():
    """Every installed package by its name, and by those that it provides."""
    fields = "${binary:Package}\t${Version}\t${Architecture}\t${source:Package}\t${Provides}\t${db:Status-Abbrev}\n"
    found, provided = {}, {}
    for line in ask("dpkg-query", "-W", "-f", fields).splitlines():
        name, version, architecture, source, provides, status = line.split("\t")
        if not status.startswith("ii"):
            continue
        name = name.split(":")[0]
        found[name] = described(name, version, architecture, source)
        for other in re.findall(r"([a-z0-9][a-z0-9+.-]+)(?: \([^)]*\))?", provides):
            provided.setdefault(other, found[name])
    return {**provided, **found}


def needed(field, here):
    """Of each dependency the alternative that is installed; one that is not is told by its name alone."""
    for dependency in filter(None, re.split(r",\s*", field.strip())):
        names = [re.split(r"[ (:]", one.strip())[0] for one in dependency.split("|")]
        chosen = next((name for name in names if name in here), None)
        yield here[chosen] if chosen else described(names[0], "NOASSERTION", "any", names[0])


def main():
    package, buildinfo, commit = sys.argv[1:]
    control = dict(re.findall(r"^ ?(\S+): (.*)$", ask("dpkg-deb", "-f", package), re.M))
    record = open(buildinfo, encoding="utf-8").read()
    here = installed()
    built = re.search(r"^Installed-Build-Depends:\n((?: .*\n?)+)", record, re.M).group(1)
    # The build's record names exact versions: "name (= version),".
    with_versions = {name: version for name, version in re.findall(r"^ (\S+?)(?::\S+)? \(= ([^)]+)\)", built, re.M)}
    with open(package, "rb") as file:
        digest = hashlib.sha256(file.read()).hexdigest()
    own = described("quillo", control["Version"], control["Architecture"], "quillo")
    own.update(SPDXID="SPDXRef-quillo", checksums=[{"algorithm": "SHA256", "checksumValue": digest}],
               sourceInfo=f"commit {commit}", primaryPackagePurpose="APPLICATION")
    font = {"SPDXID": "SPDXRef-lucide-static", "name": "lucide-static", "versionInfo": "NOASSERTION",
            "downloadLocation": "NOASSERTION", "filesAnalyzed": False, "licenseConcluded": "ISC AND MIT",
            "licenseDeclared": "ISC AND MIT", "copyrightText": "2026 Lucide Icons and Contributors; 2013-present Cole Bemis",
            "primaryPackagePurpose": "FILE"}
    with open("tools/fetch-icons", encoding="utf-8") as file:
        font["versionInfo"] = re.search(r"^package=lucide-static@(\S+)$", file.read(), re.M).group(1)
    font["externalRefs"] = [{"referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                             "referenceLocator": f"pkg:npm/lucide-static@{font['versionInfo']}"}]

    packages, relations = {"SPDXRef-quillo": own, font["SPDXID"]: font}, []

    def relate(first, kind, second):
        relations.append({"spdxElementId": first, "relationshipType": kind, "relatedSpdxElement": second})

    relate("SPDXRef-DOCUMENT", "DESCRIBES", "SPDXRef-quillo")
    relate("SPDXRef-quillo", "CONTAINS", font["SPDXID"])
    for other in needed(control["Depends"], here):
        packages[other["SPDXID"]] = other
        relate("SPDXRef-quillo", "DEPENDS_ON", other["SPDXID"])
    for name, version in sorted(with_versions.items()):
        other = here.get(name) or described(name, version, "any", name)
        other["versionInfo"] = version
        packages.setdefault(other["SPDXID"], other)
        relate(other["SPDXID"], "BUILD_DEPENDENCY_OF", "SPDXRef-quillo")

    # The time is the package's own, not that of the writing: the same package is told in the same words.
    made = ask("dpkg-parsechangelog", "-l", "packaging/debian/changelog", "-S", "Timestamp").strip()
    json.dump({"spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
               "name": f"quillo-{control['Version']}",
               "documentNamespace": f"https://quillo.app/spdx/quillo-{control['Version']}-{digest[:16]}",
               "creationInfo": {"created": datetime.datetime.fromtimestamp(int(made), datetime.timezone.utc)
                                .strftime("%Y-%m-%dT%H:%M:%SZ"), "creators": ["Tool: quillo-tools-package"]},
               "packages": list(packages.values()), "relationships": relations}, sys.stdout, indent=1)


if __name__ == "__main__":
    main()
