#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Says what the Debian packages in a folder are made of: an SPDX 2.3 bill of materials, as JSON.

usage: bill.py FOLDER

It names the packages that were built, with the sum of each, the source that they were built from, the
packages that they need when they run, and the exact versions of those that the source was built with.
The same packages give the same bytes.
"""
import hashlib
import json
import pathlib
import re
import subprocess
import sys
from datetime import datetime, timezone
from email import message_from_string
from email.utils import parsedate_to_datetime

AUTHORS = "Organization: the kpgeometry authors"
NAMESPACE = "https://kpgeometry.example.org/spdx"
# Its headers alone are used, whose templates become a part of the library.
COMPILED_IN = {"libkpgeometry1": "libhwy-dev"}


def control_fields(text):
    """The fields of a control file, which are written as those of mails."""
    return {name: " ".join(value.split()) for name, value in message_from_string(text).items()}


def names_of_relation(relation):
    """The packages of a field like Depends, the first of each choice."""
    choices = (choice.split("|")[0] for choice in relation.split(","))
    return [re.match(r"[^\s(:\[]+", choice.strip()).group() for choice in choices if choice.strip()]


def identifier(name):
    return "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", name)


def described(name, version, **more):
    """A package as SPDX describes it; of what is not ours nothing is claimed."""
    known = {"versionInfo": version} if version else {}
    return {
        "SPDXID": identifier(name), "name": name, **known, "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False, "licenseConcluded": "NOASSERTION", "licenseDeclared": "NOASSERTION", "copyrightText": "NOASSERTION", **more}


def ours(name, version, file):
    """A package of ours, with the sum of its file."""
    return described(
        name, version, packageFileName=file.name, supplier=AUTHORS,
        checksums=[{"algorithm": "SHA256",
                    "checksumValue": hashlib.sha256(file.read_bytes()).hexdigest()}],
        licenseConcluded="MIT", licenseDeclared="MIT", copyrightText="2026 the kpgeometry authors")


def only_file(folder, pattern):
    found = sorted(folder.glob(pattern))
    if len(found) != 1:
        sys.exit(f"{folder}: not one file {pattern}, but {len(found)}")
    return found[0]


class Bill:
    def __init__(self):
        self.packages = {}
        self.relations = []

    def add(self, package):
        self.packages.setdefault(package["name"], package)

    def relate(self, subject, relation, target):
        self.relations.append({"spdxElementId": identifier(subject), "relationshipType": relation,
                               "relatedSpdxElement": identifier(target)})

    def document(self, title, created):
        known = {package["SPDXID"] for package in self.packages.values()} | {"SPDXRef-DOCUMENT"}
        for relation in self.relations:
            for end in ("spdxElementId", "relatedSpdxElement"):
                if relation[end] not in known:
                    sys.exit(f"{title}: a relation names {relation[end]}, which is not in the bill")
        content = json.dumps([self.packages, self.relations], sort_keys=True).encode()
        return {
            "spdxVersion": "SPDX-2.3", "dataLicense": "CC0-1.0", "SPDXID": "SPDXRef-DOCUMENT",
            "name": title,
            "documentNamespace": f"{NAMESPACE}/{title}-{hashlib.sha256(content).hexdigest()}",
            "creationInfo": {"created": created, "creators": [AUTHORS]},
            "packages": sorted(self.packages.values(), key=lambda package: package["name"]),
            "relationships": self.relations}


def bill_of(folder):
    dsc = control_fields(only_file(folder, "*.dsc").read_text())
    source, version = dsc["Source"] + "-source", dsc["Version"]
    bill = Bill()
    bill.add(ours(source, version, only_file(folder, "*.tar.*")))
    bill.relations.append({"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
                           "relatedSpdxElement": identifier(source)})

    built = {}
    for file in sorted(folder.glob("*.deb")):
        built[file] = control_fields(
            subprocess.run(["dpkg-deb", "--field", file], check=True, capture_output=True,
                           text=True).stdout)
        bill.add(ours(built[file]["Package"], built[file]["Version"], file))

    buildinfo = control_fields(only_file(folder, "*.buildinfo").read_text())
    installed = dict(re.findall(r"(\S+) \(= ([^)]+)\)", buildinfo["Installed-Build-Depends"]))
    needed = names_of_relation(dsc["Build-Depends"] + "," + dsc.get("Build-Depends-Indep", ""))
    for name in needed:
        if name in installed: # debhelper-compat is a level, not a package
            bill.add(described(name, installed[name]))
            bill.relate(name, "BUILD_DEPENDENCY_OF", source)

    for fields in built.values():
        name = fields["Package"]
        bill.relate(name, "GENERATED_FROM", source)
        for dependency in names_of_relation(fields.get("Depends", "")):
            # Which version runs is the user's: it is at least the one that it was built with.
            bill.add(described(dependency, installed.get(dependency)))
            bill.relate(name, "DEPENDS_ON", dependency)
        if name in COMPILED_IN:
            bill.relate(name, "STATIC_LINK", COMPILED_IN[name])

    created = parsedate_to_datetime(buildinfo["Build-Date"])
    changed = re.search(r'SOURCE_DATE_EPOCH="(\d+)"', buildinfo["Environment"])
    if changed:
        created = datetime.fromtimestamp(int(changed.group(1)), timezone.utc)
    return bill.document(f"{dsc['Source']}-{version}", created.strftime("%Y-%m-%dT%H:%M:%SZ"))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__.split("\n\n")[1])
    print(json.dumps(bill_of(pathlib.Path(sys.argv[1])), indent=1))
