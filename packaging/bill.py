#!/usr/bin/env python3
"""bill.py VERSION BUILD SBOM LICENCES FILE...: what the built FILEs, given relative to BUILD, are made
of and linked with, from the build's own records (Ninja's) and the files themselves: an SPDX document,
and the licences as Debian's packages state them. The moment in the document is SOURCE_DATE_EPOCH."""

import datetime
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

COMMON_LICENCES = pathlib.Path("/usr/share/common-licenses")
# How a package takes part, the strongest first.
LINKS = {
    "DYNAMIC_LINK": "its shared library is loaded",
    "STATIC_LINK": "its static library is linked in",
    "BUILD_DEPENDENCY_OF": "its headers are compiled, and what they define may be in the result",
}


def output(*command, cwd=None):
    return subprocess.run(command, cwd=cwd, check=True, stdout=subprocess.PIPE, text=True).stdout


def owners(files):
    """The Debian packages that have the files. Each must be in one."""
    # Where directories were merged a package may know its file by either name.
    names = {}
    for file in files:
        path = os.path.realpath(file)
        names.update({path: file, path.removeprefix("/usr"): file})
    found, packages = set(), set()
    if names:
        # It fails when one of the names has no package.
        listing = subprocess.run(["dpkg-query", "-S", *sorted(names)], stdout=subprocess.PIPE,
                                 stderr=subprocess.DEVNULL, text=True).stdout
        for line in listing.splitlines():
            if not line.startswith("diversion "):
                holders, path = line.split(": ", 1)
                packages.update(holders.split(", "))
                found.add(names.get(path))
    if missing := set(files) - found:
        sys.exit(f"bill.py: no package has {' '.join(sorted(missing))}")
    return packages


def loaded(file):
    """The shared libraries that the file itself asks for; none if it is an archive."""
    if file.suffix == ".a":
        return set()
    needed = set(re.findall(r"\(NEEDED\).*\[(.+)\]", output("readelf", "-d", file)))
    return {path for name, path in re.findall(r"(\S+) => (/\S+)", output("ldd", file))
            if name in needed and not name.startswith("libOvintaSDK")}


def packages(build, files):
    """Each package with its kind of link, by the files that take part."""
    inputs = output("ninja", "-t", "inputs", *files, cwd=build).splitlines()
    objects = [name for name in inputs if name.endswith(".o")]
    headers = {line.strip() for line in output("ninja", "-t", "deps", *objects, cwd=build).splitlines()
               if line.startswith("    /usr/")}
    libraries = set().union(*(loaded(build / name) for name in files))
    archives = {name for name in inputs if name.startswith("/usr/") and name.endswith(".a")}
    parts = {
        "DYNAMIC_LINK": owners(libraries),
        "STATIC_LINK": owners(archives),
        "BUILD_DEPENDENCY_OF": owners(headers),
    }
    kinds = {}
    for kind in LINKS:
        for package in parts[kind]:
            kinds.setdefault(package, kind)
    if not all(parts.values()):
        sys.exit("bill.py: this is not the record of a whole build")
    return kinds


def described(package):
    """Name, version, architecture, source and home page of an installed package."""
    form = "${Package}\t${Version}\t${Architecture}\t${source:Package}\t${Homepage}"
    return output("dpkg-query", "-W", "-f", form, package).split("\t")


def spdx(version, build, files, kinds):
    moment = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]), datetime.timezone.utc)
    own = "SPDXRef-OvintaSDK"
    entries = [{
        "SPDXID": own, "name": "OvintaSDK", "versionInfo": version, "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False, "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION",
        "copyrightText": "NOASSERTION"}]
    relationships = [{"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                      "relatedSpdxElement": own}]
    for package in sorted(kinds):
        name, package_version, architecture, source, home = described(package)
        identifier = "SPDXRef-Debian-" + re.sub(r"[^A-Za-z0-9.]", "-", name)
        entries.append({
            "SPDXID": identifier, "name": name, "versionInfo": package_version,
            "supplier": "Organization: Debian", "downloadLocation": "NOASSERTION",
            "filesAnalyzed": False, "sourceInfo": f"Debian source package {source}",
            "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION",
            "copyrightText": "NOASSERTION", **({"homepage": home} if home else {}),
            "externalRefs": [{
                "referenceCategory": "PACKAGE-MANAGER", "referenceType": "purl",
                "referenceLocator": f"pkg:deb/debian/{name}@{package_version.replace('+', '%2B')}"
                                    f"?arch={architecture}"}]})
        kind = kinds[package]
        pair = (identifier, own) if kind == "BUILD_DEPENDENCY_OF" else (own, identifier)
        relationships.append({"spdxElementId": pair[0], "relationshipType": kind,
                              "relatedSpdxElement": pair[1], "comment": LINKS[kind]})
    digest = hashlib.sha256()
    for name in files:
        content = (build / name).read_bytes()
        digest.update(content)
    return {
        "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
        "name": f"OvintaSDK-{version}",
        "documentNamespace": f"urn:ovinta-sdk:{version}:{digest.hexdigest()}",
        "creationInfo": {"created": moment.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: OvintaSDK", "Tool: bill.py"]},
        "packages": entries, "relationships": relationships}


def licences(kinds):
    """The packages' copyright files, those that are the same once, and the texts they refer to."""
    texts = {}
    for package in sorted(kinds):
        name = package.split(":")[0]
        text = pathlib.Path(f"/usr/share/doc/{name}/copyright").read_text(errors="replace")
        texts.setdefault(text, []).append(name)
    referred = {name.rstrip(".") for text in texts
                for name in re.findall(rf"{COMMON_LICENCES}/([A-Za-z0-9.+-]+)", text)}
    parts = [(", ".join(names), text) for text, names in texts.items()]
    parts += [(name, (COMMON_LICENCES / name).read_text())
              for name in sorted(referred) if (COMMON_LICENCES / name).is_file()]
    rule = "=" * 100
    return "\n".join(f"{rule}\n{title}\n{rule}\n\n{text.strip()}\n" for title, text in parts)


def main():
    version, build, bill, texts = sys.argv[1], pathlib.Path(sys.argv[2]), *sys.argv[3:5]
    files = sys.argv[5:]
    kinds = packages(build, files)
    document = spdx(version, build, files, kinds)
    pathlib.Path(bill).write_text(json.dumps(document, indent=1) + "\n")
    pathlib.Path(texts).write_text(licences(kinds))
    for kind in LINKS:
        names = sorted(package.split(":")[0] for package in kinds if kinds[package] == kind)
        print(f"{kind}: {' '.join(names)}")


if __name__ == "__main__":
    main()
