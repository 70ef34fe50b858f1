#!/usr/bin/env python3
"""Completes a vendor SVD file for Quillon's SVD reader.

Quillon reads the common core of CMSIS-SVD: registers with their own <size>,
fields positioned by <lsb>/<msb>, plain peripherals and registers. Vendor files
use more of the format. This script writes a copy in which:

  * peripherals with derivedFrom get a copy of the base peripheral's registers;
  * register clusters are flattened (CLUSTER_REGISTER names, offsets added);
  * dim arrays of registers and clusters are expanded (NAME[%s] -> NAME0, NAME1...);
  * every register carries a <size> (inherited from peripheral or device);
  * every field carries <lsb> and <msb> (from bitOffset/bitWidth or bitRange).

Usage: complete_svd.py <vendor.svd> <completed.svd>
"""
import copy
import re
import sys
import xml.etree.ElementTree as ET


def text(node, tag, default=None):
    child = node.find(tag)
    return child.text.strip() if child is not None and child.text else default


def number(value):
    value = value.strip().lower()
    if value.startswith("0x"):
        return int(value, 16)
    if value.startswith("#"):
        return int(value[1:].replace("x", "0"), 2)
    return int(value, 0) if value.startswith("0b") else int(value)


def set_child(node, tag, value, after=None):
    child = node.find(tag)
    if child is None:
        child = ET.Element(tag)
        index = list(node).index(node.find(after)) + 1 if after is not None and node.find(after) is not None else len(node)
        node.insert(index, child)
    child.text = value
    return child


def dim_names(node):
    """Names and offsets of a dim array, or one (name, 0) pair."""
    dim = text(node, "dim")
    name = text(node, "name")
    if dim is None:
        return [(name, 0)]
    count = number(dim)
    step = number(text(node, "dimIncrement", "0"))
    index_text = text(node, "dimIndex")
    if index_text:
        if "-" in index_text and "," not in index_text:
            first, last = index_text.split("-")
            if first.isdigit():
                indices = [str(i) for i in range(int(first), int(last) + 1)]
            else:
                indices = [chr(c) for c in range(ord(first), ord(last) + 1)]
        else:
            indices = [i.strip() for i in index_text.split(",")]
    else:
        indices = [str(i) for i in range(count)]
    plain = name.replace("[%s]", "%s")
    return [(plain.replace("%s", idx), i * step) for i, idx in enumerate(indices[:count])]


def strip_dim(node):
    for tag in ("dim", "dimIncrement", "dimIndex", "dimName"):
        child = node.find(tag)
        if child is not None:
            node.remove(child)


def complete_fields(register):
    fields = register.find("fields")
    if fields is None:
        return
    for field in fields.findall("field"):
        if field.find("lsb") is not None and field.find("msb") is not None:
            continue
        offset = text(field, "bitOffset")
        width = text(field, "bitWidth")
        bit_range = text(field, "bitRange")
        if offset is not None:
            lsb = number(offset)
            msb = lsb + number(width or "1") - 1
        elif bit_range:
            m = re.match(r"\[(\d+):(\d+)\]", bit_range)
            if not m:
                continue
            msb, lsb = int(m.group(1)), int(m.group(2))
        else:
            continue
        for tag in ("bitOffset", "bitWidth", "bitRange"):
            child = field.find(tag)
            if child is not None:
                field.remove(child)
        after = "description" if field.find("description") is not None else "name"
        set_child(field, "lsb", str(lsb), after=after)
        set_child(field, "msb", str(msb), after="lsb")


def expand_registers(container, size, prefix="", base_offset=0):
    """Flat list of registers under a <registers> or <cluster> node."""
    out = []
    for node in list(container):
        if node.tag == "register":
            for name, offset in dim_names(node):
                reg = copy.deepcopy(node)
                strip_dim(reg)
                set_child(reg, "name", prefix + name)
                reg_offset = number(text(node, "addressOffset", "0")) + base_offset + offset
                set_child(reg, "addressOffset", hex(reg_offset), after="name")
                if reg.find("size") is None:
                    set_child(reg, "size", str(size), after="addressOffset")
                else:
                    reg.find("size").text = str(number(text(reg, "size")))
                complete_fields(reg)
                out.append(reg)
        elif node.tag == "cluster":
            cluster_size = number(text(node, "size", str(size)))
            for name, offset in dim_names(node):
                cluster_offset = number(text(node, "addressOffset", "0")) + base_offset + offset
                out.extend(expand_registers(node, cluster_size, prefix + name + "_", cluster_offset))
    return out


def main(source, target):
    tree = ET.parse(source)
    device = tree.getroot()
    device_size = number(text(device, "size", "32"))
    peripherals = device.find("peripherals")
    by_name = {text(p, "name"): p for p in peripherals.findall("peripheral")}

    for peripheral in peripherals.findall("peripheral"):
        base_name = peripheral.get("derivedFrom")
        if base_name and peripheral.find("registers") is None and base_name in by_name:
            base = by_name[base_name].find("registers")
            if base is not None:
                peripheral.append(copy.deepcopy(base))
        if base_name:
            del peripheral.attrib["derivedFrom"]

    for peripheral in peripherals.findall("peripheral"):
        registers = peripheral.find("registers")
        if registers is None:
            continue
        size = number(text(peripheral, "size", str(device_size)))
        flat = expand_registers(registers, size)
        for child in list(registers):
            registers.remove(child)
        registers.extend(flat)

    ET.indent(tree, space="  ")
    tree.write(target, encoding="utf-8", xml_declaration=True)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
