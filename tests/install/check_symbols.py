"""check_symbols.py NM PREFIX: compares what installed libraries export with what installed headers mark for export.

Fails on an exported name that no header marks, such as an instantiation of somebody else's template, and on a marked
function that no library exports.
"""

import pathlib
import re
import subprocess
import sys


def marked_names(headers):
    text = "".join(re.sub(r"(?m)^#.*$", "", header.read_text(encoding="utf-8")) for header in headers)
    classes = set(re.findall(r"\b(?:class|struct) [A-Z_]+_API (\w+)", text))
    functions = set(re.findall(r"(?<!class )(?<!struct )\b[A-Z_]+_API [^;({]*?\b(\w+\(|operator)", text))
    return classes, {function.rstrip("(") for function in functions}


def exported_symbols(nm, library):
    listing = subprocess.run([nm, "-D", "--defined-only", "-C", library], check=True, capture_output=True, text=True)
    return [line.split(" ", 2)[2] for line in listing.stdout.splitlines()]


def owner(symbol):
    """The class that a symbol belongs to, or the free function; nothing for what is neither Orvel's nor prc's."""
    bare = re.sub(r"^(vtable|typeinfo|typeinfo name|VTT|guard variable|.*thunk) (for|to) ", "", symbol)
    found = re.match(r"(?:\w+ )?(?:Orvel|prc)::(?:Model::)?(\w+)", bare)
    return found and re.sub("^operator.*", "operator", found[1])


def main():
    nm, prefix = sys.argv[1], pathlib.Path(sys.argv[2])
    libraries = [path for path in prefix.glob("lib/**/*.so") if not path.is_dir()]
    classes, functions = marked_names(prefix.glob("include/**/*.h"))
    owners = {owner(symbol): (symbol, library) for library in libraries for symbol in exported_symbols(nm, library)}
    faults = [f"{owners[name][1].name} exports {owners[name][0]}" for name in owners if name not in classes | functions]
    faults += [f"no library exports {function}" for function in functions - set(owners)]
    print(*faults, f"{len(libraries)} libraries, {len(owners)} exported classes and functions", sep="\n")
    sys.exit(len(libraries) != 4 or len(faults) > 0)


main()
