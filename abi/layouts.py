"""layouts.py OBJECT: prints the layout of every public record, class and enumeration that the debug information of an
object file describes: sizes, the offset of each base and field, the places of the virtual functions, enumerators."""

import re
import subprocess
import sys

# The list of the database is a template: one list stands for all.
PUBLIC = re.compile(r"kiri::tov::|taDci|ppStlList<taDciObj\*>")
# What these add to the name of a container is what it has anyway.
USUAL = re.compile(r", std::(allocator|default_delete)<[^<>]*> ?")
RECORDS = ("class_type", "structure_type", "union_type")
DIE = re.compile(r" <(\w+)><(\w+)>: Abbrev Number: \d+ \(DW_TAG_(\w+)\)")
ATTRIBUTE = re.compile(r"    <\w+>   DW_AT_(\w+) *: (?:\(.*?\): )?(.*)")


class Die:
    """One entry of the debug information: a type, a field, a function ..."""

    def __init__(self, tag, parent):
        self.tag, self.parent, self.children, self.attributes = tag, parent, [], {}
        if parent:
            parent.children.append(self)

    def get(self, attribute, otherwise=""):
        return self.attributes.get(attribute, otherwise)

    def number(self, attribute):
        return int(self.get(attribute, "0").split()[0], 0)


def read_dies(path):
    """Returns all entries by their offsets."""
    command = ["readelf", "--debug-dump=info", path]
    dies, stack, die = {}, [], None
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True, errors="replace") as dump:
        for line in dump.stdout:
            if match := DIE.match(line):
                depth, offset, tag = match.groups()
                del stack[int(depth):]
                die = dies[offset] = Die(tag, stack[-1] if stack else None)
                stack.append(die)
            elif die and (match := ATTRIBUTE.match(line)):
                die.attributes[match[1]] = match[2].strip()
    return dies


def qualified(die):
    """Returns the name with those of the namespaces and classes around it."""
    name = die.get("name", "(unnamed)")
    around = die.parent
    if around is None or around.tag in ("compile_unit", "subprogram"):
        return name
    return qualified(around) + "::" + name


def type_name(dies, die):
    """Returns the type of a field as C++ writes it, short where the name is well known."""
    reference = re.match(r"<0x(\w+)>", die.get("type"))
    if not reference:
        return "void"
    target = dies[reference[1]]
    suffix = {"pointer_type": "*", "reference_type": "&", "const_type": " const"}.get(target.tag)
    if suffix:
        return type_name(dies, target) + suffix
    if target.tag == "array_type":
        counts = [str(child.number("upper_bound") + 1) for child in target.children if child.tag == "subrange_type"]
        return type_name(dies, target) + "[" + "][".join(counts) + "]"
    return USUAL.sub("", qualified(target).replace("kiri::tov::", "").replace("std::__cxx11::", "std::"))


def describe(dies, die):
    """Yields the lines of one record or enumeration."""
    kind = die.tag.replace("_type", "").replace("structure", "struct").replace("enumeration", "enum")
    yield f"{kind} {qualified(die)}: {die.number('byte_size')} bytes"
    for child in die.children:
        if child.tag == "enumerator":
            yield f"  {child.get('name')} = {child.get('const_value')}"
        elif child.tag == "inheritance":
            yield f"{child.number('data_member_location'):6}  base {type_name(dies, child)}"
        elif child.tag == "member" and "data_member_location" in child.attributes:
            name = child.get("name")
            field = "table of virtual functions" if name.startswith("_vptr") else f"{type_name(dies, child)} {name}"
            yield f"{child.number('data_member_location'):6}  {field}"
    for child in die.children:
        place = re.search(r"DW_OP_(?:constu: |lit)(\d+)", child.get("vtable_elem_location"))
        if place:
            yield f"  virtual {place[1]}: {child.get('name')}"


def main():
    dies = read_dies(sys.argv[1])
    texts = {}
    for die in dies.values():
        if die.tag in RECORDS + ("enumeration_type",) and "byte_size" in die.attributes and PUBLIC.match(qualified(die)):
            texts[qualified(die)] = "\n".join(describe(dies, die))
    for name in sorted(texts):
        print(texts[name], end="\n\n")


main()
