"""pe_file: what a 64-bit Windows binary says about itself: exports, imports, flags and its version resource."""

import struct

HIGH_ENTROPY_VA, DYNAMIC_BASE, NX_COMPAT = 0x20, 0x40, 0x100
EXPORT_DIRECTORY, IMPORT_DIRECTORY, RESOURCE_DIRECTORY, RELOCATION_DIRECTORY = 0, 1, 2, 5
RT_VERSION = 16


class PeFile:
    def __init__(self, path):
        self._bytes = path.read_bytes()
        head = self._number("<I", 0x3C)
        if self._bytes[head : head + 4] != b"PE\0\0":
            raise ValueError(f"{path} is no Windows binary")
        self.machine = self._number("<H", head + 4)
        section_count = self._number("<H", head + 6)
        optional_size = self._number("<H", head + 20)
        optional = head + 24
        if self._number("<H", optional) != 0x20B:
            raise ValueError(f"{path} is no 64-bit binary")
        self.dll_characteristics = self._number("<H", optional + 70)
        self._directories = [
            self._numbers("<II", optional + 112 + 8 * i) for i in range(self._number("<I", optional + 108))
        ]
        table = optional + optional_size
        # Of each section: size in memory, address, size in the file, place in the file.
        self._sections = [self._numbers("<IIII", table + 40 * i + 8) for i in range(section_count)]

    @property
    def size_without_symbols(self):
        """Where the last section ends; the symbols of a build that is not stripped come after it."""
        return max(place + file_size for _, _, file_size, place in self._sections)

    @property
    def can_be_moved(self):
        """Whether it carries what the loader needs to load it at another address than the one it was linked for."""
        return self._directories[RELOCATION_DIRECTORY][1] > 0

    @property
    def exports(self):
        address, _ = self._directories[EXPORT_DIRECTORY]
        if not address:
            return []
        count, _, names = self._numbers("<III", self._place(address) + 24)
        addresses = self._numbers(f"<{count}I", self._place(names))
        return [self._text(name) for name in addresses]

    @property
    def imports(self):
        """The imported names by the library that they are imported from."""
        found = {}
        address, _ = self._directories[IMPORT_DIRECTORY]
        place = self._place(address)
        while any(descriptor := self._numbers("<IIIII", place)):
            lookup, _, _, library, first = descriptor
            found[self._text(library)] = self._imported_names(lookup or first)
            place += 20
        return found

    @property
    def version_texts(self):
        """The texts of the version resource by their names; empty without one."""
        block = self._version_block()
        if block is None:
            return {}
        _, _, _, children = self._version_node(block, 0)
        strings = next(node for node in children if node[0] == "StringFileInfo")
        _, _, _, texts = strings[3][0]
        return {name: value for name, value, _, _ in texts}

    def _imported_names(self, table):
        names, place = [], self._place(table)
        while entry := self._number("<Q", place):
            names.append(f"#{entry & 0xFFFF}" if entry >> 63 else self._text((entry & 0x7FFFFFFF) + 2))
            place += 8
        return names

    def _version_block(self):
        address, _ = self._directories[RESOURCE_DIRECTORY]
        if not address:
            return None
        root = self._place(address)
        offset = self._resource_entry(root, 0, RT_VERSION)
        # The levels of names and of languages: one of each.
        while offset is not None and offset & 0x80000000:
            offset = self._resource_entry(root, offset & 0x7FFFFFFF, None)
        if offset is None:
            return None
        data, size = self._numbers("<II", root + offset)
        start = self._place(data)
        return self._bytes[start : start + size]

    def _resource_entry(self, root, directory, wanted):
        named, numbered = self._numbers("<HH", root + directory + 12)
        for i in range(named + numbered):
            identity, offset = self._numbers("<II", root + directory + 16 + 8 * i)
            if wanted in (None, identity):
                return offset
        return None

    def _version_node(self, block, start):
        """Name, text value, end and children of a node of the version tree."""
        length, value_length, is_text = struct.unpack_from("<HHH", block, start)
        end = start + length
        name_end = start + 6
        while block[name_end : name_end + 2] != b"\0\0":
            name_end += 2
        name = block[start + 6 : name_end].decode("utf-16-le")
        place = _aligned(name_end + 2)
        size = value_length * 2 if is_text else value_length
        value = block[place : place + size].decode("utf-16-le").rstrip("\0") if is_text else ""
        children, place = [], _aligned(place + size)
        while place < end:
            child = self._version_node(block, place)
            children.append(child)
            place = _aligned(child[2])
        return name, value, end, children

    def _place(self, address):
        for memory_size, start, file_size, place in self._sections:
            if start <= address < start + max(memory_size, file_size):
                return address - start + place
        raise ValueError(f"address {address:#x} lies in no section")

    def _text(self, address):
        start = self._place(address)
        return self._bytes[start : self._bytes.index(b"\0", start)].decode()

    def _numbers(self, form, place):
        return struct.unpack_from(form, self._bytes, place)

    def _number(self, form, place):
        return self._numbers(form, place)[0]


def _aligned(place):
    return (place + 3) & ~3
