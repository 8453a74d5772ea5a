"""Reads equivalent.txt: mutants that behave like the sources, each with the reason why."""


def read_equivalents(path):
    """The mutants' names as (file, function, before, after). Entries are separated by blank lines; lines that begin
    with '#' are comments:

        <file> <function> [#2 for the second of such places]
          - <the line>
          + <the line as changed>
        <reason>
    """
    names = set()
    with open(path, encoding="utf-8") as file:
        lines = [line.rstrip() for line in file if not line.startswith("#")]
    for entry in "\n".join(lines).split("\n\n"):
        parts = [line.strip() for line in entry.strip().split("\n")]
        if parts == [""]:
            continue
        if len(parts) < 4 or not parts[1].startswith("- ") or not parts[2].startswith("+ "):
            raise ValueError(f"{path}: not file, line, changed line and reason:\n{entry}")
        where, _, function = parts[0].partition(" ")
        names.add((where, function, parts[1][2:], parts[2][2:]))
    return names
