"""Groups of sources that can be compiled as one text, since what most of them cost is their headers.
source_groups.py SIZE SOURCE...: prints "GROUP SOURCE" for each source, at most SIZE to a group."""
import re
import sys
from pathlib import Path


def own_names(text):
    """Names that a source gives to its own parts, as far as lines that begin at the margin show them."""
    text = re.sub(r"#include.*|//.*", "", text)
    patterns = (r"^(?:class|struct|enum class|enum) (\w+)", r"^[\w:][\w:<>,&*() ]*?\b(\w+)\(",
                r"^(?:static |inline )?(?:constexpr|const) [^=({]*?\b(\w+) ?(?:=|\(|\{|\[)", r"^using (\w+) =")
    return {name for pattern in patterns for name in re.findall(pattern, text, re.M)}


def opens_names(text):
    """Whether a source takes over all names of one of our namespaces, which may be those of another source."""
    return re.search(r"^using namespace (?!Qt::|std::)", text, re.M) is not None


def gather(sources, size):
    """Groups of sources without a name in common."""
    alone, groups = [], []
    for source in sources:
        text = Path(source).read_text()
        if opens_names(text):
            alone.append([source])
            continue
        names = own_names(text)
        group = next((g for g in groups if len(g[0]) < size and not g[1] & names), None)
        if group is None:
            groups.append(group := ([], set()))
        group[0].append(source)
        group[1].update(names)
    return [members for members, _ in groups] + alone


if __name__ == "__main__":
    for number, members in enumerate(gather(sys.argv[2:], int(sys.argv[1]))):
        for member in members:
            print(number, member)
