#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tovra authors
# SPDX-License-Identifier: MIT
"""Fails when an installed header declares a function or variable that no installed library
defines: a host that calls it would not link.

Installs the build into a scratch prefix, has clang list every declaration of the kit's
headers with its mangled name, and looks each one up among the symbols that the installed
shared libraries export. Inline, constexpr, pure, deleted and template declarations need no
definition in a library and are left out, as are private members, which a host cannot use.

    scripts/check-declarations.py BUILD_DIR [CLANG]
"""

import json
import os
import subprocess
import sys
import tempfile

FUNCTIONS = {"FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl"}
# Every name a host can reach starts with one of these (kTVR... constants contain "TVR").
NAME_FILTERS = ["TVR", "RQKeychain", "Tovra"]
QT_MODULES = ["Qt6Widgets", "Qt6Network", "Qt6Qml", "Qt6Quick", "Qt6DBus"]


def dumps(text):
    """The JSON objects that clang printed one after the other."""
    decoder = json.JSONDecoder()
    at = 0
    while True:
        while at < len(text) and text[at].isspace():
            at += 1
        if at >= len(text):
            return
        node, at = decoder.raw_decode(text, at)
        yield node


def needs_definition(node):
    if node.get("isImplicit") or node.get("inline") or node.get("constexpr") or node.get("pure"):
        return False
    if node.get("explicitlyDeleted") or node.get("access") == "private":
        return False
    # Q_OBJECT declares it hidden (Q_DECL_HIDDEN): moc defines it for the library's own use.
    if node.get("name") == "qt_static_metacall":
        return False
    if node["kind"] in FUNCTIONS:
        # A body written in the header, "= default" in the class among them.
        if node.get("explicitlyDefaulted") == "default":
            return False
        return not any(child.get("kind") == "CompoundStmt" for child in node.get("inner", []))
    if node["kind"] == "VarDecl":
        return node.get("storageClass") in ("extern", "static") and "init" not in node
    return False


def declarations(node, found, in_template=False):
    """Collects (mangled name, readable name) of what \a node declares that a library must define."""
    kind = node.get("kind")
    if kind in ("FunctionTemplateDecl", "ClassTemplateDecl", "ClassTemplatePartialSpecializationDecl"):
        in_template = True
    if kind == "FriendDecl":
        return
    if not in_template and kind in FUNCTIONS | {"VarDecl"} and "mangledName" in node and needs_definition(node):
        found[node["mangledName"]] = node.get("name", "?")
    if kind in ("CXXRecordDecl", "NamespaceDecl", "LinkageSpecDecl", "FunctionTemplateDecl", "ClassTemplateDecl",
                "TranslationUnitDecl"):
        for child in node.get("inner", []):
            declarations(child, found, in_template)


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    build_dir = sys.argv[1]
    clang = sys.argv[2] if len(sys.argv) > 2 else "clang++-14"
    with tempfile.TemporaryDirectory() as prefix:
        subprocess.run(["cmake", "--install", build_dir, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        include = os.path.join(prefix, "include", "Tovra")
        headers = sorted(name for name in os.listdir(include) if name.endswith(".h"))
        source = os.path.join(prefix, "every_header.cpp")
        with open(source, "w") as out:
            out.writelines(f'#include "{name}"\n' for name in headers)
        qt_flags = subprocess.run(["pkg-config", "--cflags"] + QT_MODULES, check=True, capture_output=True,
                                  text=True).stdout.split()

        wanted = {}
        for name_filter in NAME_FILTERS:
            dumped = subprocess.run([clang, "-std=c++17", "-fPIC", "-fsyntax-only", "-I" + include] + qt_flags
                                    + ["-Xclang", "-ast-dump=json", "-Xclang", "-ast-dump-filter=" + name_filter,
                                       source], check=True, capture_output=True, text=True).stdout
            for node in dumps(dumped):
                declarations(node, wanted)

        libraries = []
        for root, _, files in os.walk(prefix):
            libraries += [os.path.join(root, f) for f in files if f.endswith(".so") and not os.path.islink(
                os.path.join(root, f)) or (".so." in f and not os.path.islink(os.path.join(root, f)))]
        defined = set()
        for library in libraries:
            symbols = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True,
                                     text=True).stdout
            defined.update(line.split()[-1] for line in symbols.splitlines() if line.strip())

    missing = sorted(name for name in wanted if name not in defined)
    if not libraries or not wanted:
        sys.exit("check-declarations: found no libraries or no declarations to check")
    if missing:
        readable = subprocess.run(["c++filt"], input="\n".join(missing), capture_output=True, text=True).stdout
        print(f"check-declarations: {len(missing)} declared in an installed header, defined by no installed "
              "library:\n" + readable, file=sys.stderr)
        return 1
    print(f"declarations: all {len(wanted)} functions and variables of {len(headers)} installed headers are "
          f"defined by {len(libraries)} libraries")
    return 0


if __name__ == "__main__":
    sys.exit(main())
