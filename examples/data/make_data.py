#!/usr/bin/env python3
"""Writes the sample files of this folder: demo.glb, display.glb with crate.png, sign.png, bracket.obj, wave.ply and knot.stl.

The files are committed; run this after a change here. It needs nothing but Python, and gives the same bytes every time.
"""

import json
import math
import os
import struct
import zlib

FOLDER = os.path.dirname(os.path.abspath(__file__))


# --- vectors and matrices (column-major, as glTF has them) ---------------------------------------------------------------

def add(a, b):
    return tuple(x + y for x, y in zip(a, b))


def sub(a, b):
    return tuple(x - y for x, y in zip(a, b))


def scaled(a, f):
    return tuple(x * f for x in a)


def cross(a, b):
    return (a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0])


def unit(a):
    length = math.sqrt(sum(x * x for x in a))
    return scaled(a, 1 / length) if length else (0.0, 1.0, 0.0)


def shear_z_by_y(amount):
    return [1, 0, 0, 0, 0, 1, amount, 0, 0, 0, 1, 0, 0, 0, 0, 1]


def around_y(degrees):
    half = math.radians(degrees) / 2
    return [0, math.sin(half), 0, math.cos(half)]


def around_z(degrees):
    half = math.radians(degrees) / 2
    return [0, 0, math.sin(half), math.cos(half)]


# --- shapes: lists of vertices (position, normal[, colour]) and triangles ----------------------------------------------

def linear(shown):
    """A colour value as glTF keeps it: an intensity of light."""
    return shown / 12.92 if shown <= 0.04045 else ((shown + 0.055) / 1.055) ** 2.4


class Shape:
    def __init__(self):
        self.positions = []
        self.normals = []
        self.colors = []
        self.places = []
        self.triangles = []

    def vertex(self, position, normal, color=None, place=None):
        """`place` is where on an image the vertex is, from its upper left corner."""
        self.positions.append(position)
        self.normals.append(unit(normal))
        if color:
            self.colors.append(color)
        if place:
            self.places.append(place)
        return len(self.positions) - 1

    def face(self, *corners):
        """A flat polygon, counter-clockwise seen from outside."""
        normal = cross(sub(corners[1], corners[0]), sub(corners[2], corners[0]))
        first = [self.vertex(corner, normal) for corner in corners]
        for i in range(1, len(first) - 1):
            self.triangles.append((first[0], first[i], first[i + 1]))


def box():
    shape = Shape()
    for axis in range(3):
        for side in (-0.5, 0.5):
            corners = []
            for u, v in ((-0.5, -0.5), (0.5, -0.5), (0.5, 0.5), (-0.5, 0.5)):
                corner = [0, 0, 0]
                corner[axis], corner[(axis + 1) % 3], corner[(axis + 2) % 3] = side, u, v
                corners.append(tuple(corner))
            shape.face(*(corners if side > 0 else corners[::-1]))
    return shape


def frustum(top, segments=24):
    """From radius 0.5 at y = 0 to radius `top` at y = 1; a cone when `top` is 0."""
    shape = Shape()
    slope = 0.5 - top
    ring = [(math.cos(2 * math.pi * i / segments), math.sin(2 * math.pi * i / segments)) for i in range(segments)]
    lower = [shape.vertex((0.5 * c, 0, -0.5 * s), (c, slope, -s)) for c, s in ring]
    upper = [shape.vertex((top * c, 1, -top * s), (c, slope, -s)) for c, s in ring]
    for i in range(segments):
        j = (i + 1) % segments
        shape.triangles.append((lower[i], lower[j], upper[j]))
        if top:
            shape.triangles.append((lower[i], upper[j], upper[i]))
    if top:
        shape.face(*[(top * c, 1, -top * s) for c, s in ring])
    shape.face(*[(0.5 * c, 0, -0.5 * s) for c, s in ring][::-1])
    return shape


def sphere(segments=18, rings=10, is_mapped=False):
    """A sphere of diameter 1; one that is mapped has an image around it, the poles above and below."""
    shape = Shape()
    for r in range(rings + 1):
        polar = math.pi * r / rings
        for s in range(segments + 1):
            turn = 2 * math.pi * s / segments
            normal = (math.sin(polar) * math.cos(turn), math.cos(polar), -math.sin(polar) * math.sin(turn))
            shape.vertex(scaled(normal, 0.5), normal, place=(s / segments, r / rings) if is_mapped else None)
    for r in range(rings):
        for s in range(segments):
            a = r * (segments + 1) + s
            b = a + segments + 1
            if r > 0:
                shape.triangles.append((a, b, a + 1))
            if r < rings - 1:
                shape.triangles.append((a + 1, b, b + 1))
    return shape


def crate():
    """A cube of edge 1 that shows the same image upright on each side."""
    shape = Shape()
    sides = (((1, 0, 0), (0, 1, 0)), ((0, 0, -1), (0, 1, 0)), ((-1, 0, 0), (0, 1, 0)), ((0, 0, 1), (0, 1, 0)),
             ((1, 0, 0), (0, 0, -1)), ((1, 0, 0), (0, 0, 1)))
    for right, up in sides:
        out = cross(right, up)
        first = [shape.vertex(scaled(add(out, add(scaled(right, x), scaled(up, y))), 0.5), out,
                              place=((1 + x) / 2, (1 - y) / 2)) for x, y in ((-1, -1), (1, -1), (1, 1), (-1, 1))]
        shape.triangles += [(first[0], first[1], first[2]), (first[0], first[2], first[3])]
    return shape


def roof():
    """A gable over a square of edge 1, its ridge along x at height 1."""
    a, b, c, d = (-0.5, 0, 0.5), (0.5, 0, 0.5), (0.5, 0, -0.5), (-0.5, 0, -0.5)
    left, right = (-0.5, 1, 0), (0.5, 1, 0)
    shape = Shape()
    shape.face(a, b, right, left)
    shape.face(c, d, left, right)
    shape.face(b, c, right)
    shape.face(d, a, left)
    shape.face(d, c, b, a)
    return shape


def hull():
    """A boat along x, its bow at x = 0.5, from y = 0 (keel) to y = 1 (deck)."""
    deck = [(-0.5, 1, 0.36), (0.1, 1, 0.42), (0.5, 1.12, 0), (0.1, 1, -0.42), (-0.5, 1, -0.36)]
    keel = [(-0.42, 0, 0.12), (0.1, 0, 0.14), (0.34, 0, 0), (0.1, 0, -0.14), (-0.42, 0, -0.12)]
    shape = Shape()
    for i in range(5):
        j = (i + 1) % 5
        shape.face(keel[i], keel[j], deck[j], deck[i])
    shape.face(*deck)
    shape.face(*keel[::-1])
    return shape


def sail():
    """A curved triangle: mast side at x = 0, from y = 0 to y = 1, bulging towards z."""
    shape = Shape()
    steps = 8
    rows = []
    for r in range(steps + 1):
        y = r / steps
        row = []
        for c in range(steps + 1):
            x = (1 - y) * c / steps
            bulge = 0.22 * math.sin(math.pi * c / steps) * (1 - y)
            row.append(shape.vertex((-x, y, bulge), (0.55 * math.cos(math.pi * c / steps), 0.15, 1)))
        rows.append(row)
    for r in range(steps):
        for c in range(steps):
            shape.triangles.append((rows[r][c], rows[r + 1][c], rows[r][c + 1]))
            if r < steps - 1:
                shape.triangles.append((rows[r][c + 1], rows[r + 1][c], rows[r + 1][c + 1]))
    return shape


def height(x, z):
    """The island: a flat beach, a meadow, and a rocky hill at the back."""
    distance = math.hypot(x, z)
    shore = 5.0 + 0.6 * math.sin(3 * math.atan2(z, x) + 0.6) + 0.3 * math.sin(5 * math.atan2(z, x))
    island = 1.0 / (1.0 + math.exp(2.4 * (distance - shore))) * 1.15 - 0.35
    hill = 2.1 * math.exp(-((x + 1.9) ** 2 + (z + 1.8) ** 2) / 2.4)
    bumps = 0.10 * math.sin(2.3 * x) * math.cos(1.9 * z) * max(0.0, min(1.0, shore - distance))
    return island + hill * (1.0 if distance < shore else 0.0) + bumps


def mixed(a, b, t):
    t = max(0.0, min(1.0, t))
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def island():
    sand, grass, rock = (0.98, 0.90, 0.68), (0.56, 0.78, 0.38), (0.66, 0.62, 0.58)
    shape = Shape()
    rings, segments, radius = 18, 36, 6.2

    def put(x, z):
        y = height(x, z)
        e = 0.02
        normal = (height(x - e, z) - height(x + e, z), 2 * e, height(x, z - e) - height(x, z + e))
        steep = 1 - unit(normal)[1]
        color = mixed(mixed(sand, grass, (y - 0.42) / 0.25), rock, (steep - 0.22) * 5 + (y - 2.2))
        return shape.vertex((x, y, z), normal, color)

    grid = [[put(0, 0)] * segments]
    for r in range(1, rings + 1):
        distance = radius * r / rings
        grid.append([put(distance * math.cos(2 * math.pi * s / segments), -distance * math.sin(2 * math.pi * s / segments))
                     for s in range(segments)])
    for r in range(rings):
        for s in range(segments):
            t = (s + 1) % segments
            if r > 0:
                shape.triangles.append((grid[r][s], grid[r + 1][s], grid[r][t]))
            shape.triangles.append((grid[r][t], grid[r + 1][s], grid[r + 1][t]))
    return shape


def water():
    """A slab of sea with round corners, light around the island."""
    shallow, deep, dark = (0.66, 0.93, 0.92), (0.24, 0.60, 0.80), (0.16, 0.42, 0.62)
    shape = Shape()
    segments, bottom = 72, -0.8

    def at(part, s):
        turn = 2 * math.pi * s / segments
        corner = (abs(math.cos(turn)) ** 7 + abs(math.sin(turn)) ** 7) ** (-1 / 7)
        distance = 8.6 * part * (1 + (corner - 1) * part ** 2)
        return distance * math.cos(turn), -distance * math.sin(turn)

    grid = []
    for part in (0.0, 0.5, 0.62, 0.75, 0.88, 1.0):
        color = mixed(shallow, deep, (part - 0.5) * 2.4)
        count = segments if part else 1
        row = [shape.vertex((at(part, s)[0], 0.0, at(part, s)[1]), (0, 1, 0), color) for s in range(count)]
        grid.append(row * (segments // count))
    for r in range(len(grid) - 1):
        for s in range(segments):
            t = (s + 1) % segments
            if r > 0:
                shape.triangles.append((grid[r][s], grid[r + 1][s], grid[r][t]))
            shape.triangles.append((grid[r][t], grid[r + 1][s], grid[r + 1][t]))
    for s in range(segments):
        (ax, az), (bx, bz) = at(1.0, s), at(1.0, s + 1)
        normal = (az - bz, 0, bx - ax)
        first = [shape.vertex(p, normal, dark)
                 for p in ((ax, bottom, az), (bx, bottom, bz), (bx, 0.0, bz), (ax, 0.0, az))]
        shape.triangles += [(first[0], first[1], first[2]), (first[0], first[2], first[3])]
    return shape


# --- the scene as glTF ----------------------------------------------------------------------------------------------------

class Gltf:
    def __init__(self):
        self.blob = bytearray()
        self.json = {"asset": {"version": "2.0", "generator": "make_data.py"}, "scene": 0, "scenes": [{"nodes": [0]}],
                     "nodes": [], "meshes": [], "materials": [], "accessors": [], "bufferViews": [], "buffers": []}
        self.shapes = {}
        self.meshes = {}
        self.materials = {}

    def _view(self, data, target):
        while len(self.blob) % 4:
            self.blob.append(0)
        view = {"buffer": 0, "byteOffset": len(self.blob), "byteLength": len(data)}
        if target:
            view["target"] = target
        self.json["bufferViews"].append(view)
        self.blob += data
        return len(self.json["bufferViews"]) - 1

    def _accessor(self, data, target, **fields):
        fields["bufferView"] = self._view(data, target)
        self.json["accessors"].append(fields)
        return len(self.json["accessors"]) - 1

    def shape(self, name, shape):
        count = len(shape.positions)
        positions = b"".join(struct.pack("<3f", *p) for p in shape.positions)
        rounded = [struct.unpack("<3f", struct.pack("<3f", *p)) for p in shape.positions]
        attributes = {
            "POSITION": self._accessor(positions, 34962, componentType=5126, type="VEC3", count=count,
                                       min=[min(p[i] for p in rounded) for i in range(3)],
                                       max=[max(p[i] for p in rounded) for i in range(3)]),
            "NORMAL": self._accessor(b"".join(struct.pack("<3f", *n) for n in shape.normals), 34962,
                                     componentType=5126, type="VEC3", count=count)}
        if shape.colors:
            colors = b"".join(struct.pack("<4B", *[round(255 * linear(c)) for c in color], 255) for color in shape.colors)
            attributes["COLOR_0"] = self._accessor(colors, 34962, componentType=5121, normalized=True, type="VEC4",
                                                   count=count)
        if shape.places:
            places = b"".join(struct.pack("<2f", *place) for place in shape.places)
            attributes["TEXCOORD_0"] = self._accessor(places, 34962, componentType=5126, type="VEC2", count=count)
        flat = [i for triangle in shape.triangles for i in triangle]
        indices = self._accessor(struct.pack(f"<{len(flat)}H", *flat), 34963, componentType=5123, type="SCALAR",
                                 count=len(flat))
        self.shapes[name] = {"attributes": attributes, "indices": indices}

    def material(self, color):
        if color not in self.materials:
            rgb = [linear(int(color[i:i + 2], 16) / 255) for i in (1, 3, 5)]
            self.json["materials"].append({"name": color, "pbrMetallicRoughness":
                                           {"baseColorFactor": [round(c, 4) for c in rgb] + [1.0], "metallicFactor": 0.0}})
            self.materials[color] = len(self.json["materials"]) - 1
        return self.materials[color]

    def texture(self, material, image):
        """A material that shows an image: the name of a file beside, or the bytes of one that becomes part of this file."""
        if isinstance(image, bytes):
            source = {"bufferView": self._view(image, None), "mimeType": "image/png"}
        else:
            source = {"uri": image}
        self.json.setdefault("images", []).append(source)
        self.json.setdefault("textures", []).append({"source": len(self.json["images"]) - 1})
        self.json["materials"].append({"name": material, "pbrMetallicRoughness": {
            "baseColorTexture": {"index": len(self.json["textures"]) - 1}, "metallicFactor": 0.0}})
        self.materials[material] = len(self.json["materials"]) - 1

    def glass(self, material, color, opacity):
        rgb = self.json["materials"][self.material(color)]["pbrMetallicRoughness"]["baseColorFactor"][:3]
        self.json["materials"][self.materials.pop(color)] = {"name": material, "alphaMode": "BLEND", "pbrMetallicRoughness": {
            "baseColorFactor": rgb + [opacity], "metallicFactor": 0.0}}
        self.materials[material] = len(self.json["materials"]) - 1

    def mesh(self, shape, color):
        key = (shape, color)
        if key not in self.meshes:
            primitive = dict(self.shapes[shape], material=self.material(color))
            self.json["meshes"].append({"name": f"{shape} {color}", "primitives": [primitive]})
            self.meshes[key] = len(self.json["meshes"]) - 1
        return self.meshes[key]

    def node(self, parent, name, shape=None, color=None, at=None, size=None, turn=None, matrix=None):
        node = {"name": name}
        if shape:
            node["mesh"] = self.mesh(shape, color)
        if matrix:
            node["matrix"] = matrix
        if at:
            node["translation"] = list(at)
        if turn:
            node["rotation"] = [round(q, 6) for q in turn]
        if size:
            node["scale"] = list(size) if isinstance(size, tuple) else [size] * 3
        self.json["nodes"].append(node)
        index = len(self.json["nodes"]) - 1
        if parent is not None:
            self.json["nodes"][parent].setdefault("children", []).append(index)
        return index

    def write(self, path):
        while len(self.blob) % 4:
            self.blob.append(0)
        self.json["buffers"] = [{"byteLength": len(self.blob)}]
        text = json.dumps(self.json, separators=(",", ":")).encode()
        text += b" " * (-len(text) % 4)
        with open(path, "wb") as file:
            file.write(struct.pack("<4sII", b"glTF", 2, 28 + len(text) + len(self.blob)))
            file.write(struct.pack("<I4s", len(text), b"JSON") + text)
            file.write(struct.pack("<I4s", len(self.blob), b"BIN\0") + self.blob)


WHITE, RED, STONE, WOOD, DARK = "#f4f1ea", "#c8382e", "#b0aaa2", "#a8703f", "#464c56"
LIGHT, ROOF, TRUNK, NAVY, YELLOW = "#ffd75e", "#c4553a", "#7d5837", "#2f5d92", "#f2a93b"
GREENS = ("#3a8049", "#489455", "#58a85f")


def lighthouse(scene, parent):
    tower = scene.node(parent, "lighthouse", at=(-1.9, 2.55, -1.8))
    scene.node(tower, "foundation", "cylinder", STONE, at=(0, -0.6, 0), size=(2.1, 0.85, 2.1))
    bands = scene.node(tower, "bands")
    width, y = 1.5, 0.25
    for i in range(6):
        scene.node(bands, f"band {i + 1}", "frustum", RED if i % 2 else WHITE, at=(0, round(y, 4), 0),
                   size=(round(width, 4), 0.75, round(width, 4)))
        width, y = width * 0.92, y + 0.75
    scene.node(tower, "door", "box", WOOD, at=(0, 0.55, 0.71), size=(0.36, 0.62, 0.12))
    top = scene.node(tower, "lantern room", at=(0, round(y, 4), 0))
    scene.node(top, "gallery", "cylinder", DARK, size=(1.35, 0.1, 1.35))
    for i in range(12):
        angle = math.radians(30 * i)
        scene.node(top, f"post {i + 1}", "cylinder", DARK,
                   at=(round(0.62 * math.cos(angle), 4), 0.1, round(0.62 * math.sin(angle), 4)), size=(0.05, 0.3, 0.05))
    scene.node(top, "light", "cylinder", LIGHT, at=(0, 0.1, 0), size=(0.68, 0.62, 0.68))
    scene.node(top, "cap", "cone", RED, at=(0, 0.72, 0), size=(1.0, 0.52, 1.0))
    scene.node(top, "ball", "sphere", YELLOW, at=(0, 1.29, 0), size=0.18)


def house(scene, parent):
    home = scene.node(parent, "keeper's house", at=(1.3, 0.72, -0.6), turn=around_y(-28))
    scene.node(home, "walls", "box", WHITE, at=(0, 0.5, 0), size=(1.9, 1.1, 1.3))
    scene.node(home, "roof", "roof", ROOF, at=(0, 1.05, 0), size=(2.15, 0.75, 1.6))
    scene.node(home, "chimney", "box", STONE, at=(0.55, 1.55, -0.25), size=(0.22, 0.7, 0.22))
    scene.node(home, "door", "box", NAVY, at=(0, 0.32, 0.65), size=(0.32, 0.72, 0.06))
    for i, x in enumerate((-0.6, 0.6)):
        scene.node(home, f"window {i + 1}", "box", NAVY, at=(x, 0.58, 0.65), size=(0.34, 0.34, 0.05))
        scene.node(home, f"sill {i + 1}", "box", WOOD, at=(x, 0.38, 0.67), size=(0.42, 0.06, 0.1))
    fence = scene.node(home, "fence", at=(-1.6, 0, 1.35))
    for i in range(9):
        scene.node(fence, f"picket {i + 1}", "box", WHITE, at=(round(0.4 * i, 2), 0.14, 0), size=(0.08, 0.42, 0.05))
    scene.node(fence, "rail", "box", WHITE, at=(1.6, 0.2, 0), size=(3.3, 0.06, 0.04))


def trees(scene, parent):
    wood = scene.node(parent, "trees")
    places = ((3.1, -2.2, 1.0), (2.3, -3.0, 1.2), (3.6, -0.9, 0.8), (0.9, -3.4, 1.05), (-3.7, 0.6, 0.9), (-3.0, 1.7, 1.1),
              (-4.0, -0.7, 0.75), (3.4, 1.1, 0.85), (-0.6, -3.9, 0.8))
    for i, (x, z, size) in enumerate(places):
        tree = scene.node(wood, f"tree {i + 1}", at=(x, round(height(x, z) - 0.05, 3), z), size=size, turn=around_y(40 * i))
        scene.node(tree, "trunk", "cylinder", TRUNK, size=(0.2, 0.6, 0.2))
        for level, (y, width) in enumerate(((0.45, 1.15), (0.95, 0.9), (1.4, 0.62))):
            scene.node(tree, f"branches {level + 1}", "cone", GREENS[level], at=(0, y, 0), size=(width, 0.85, width))


def rocks(scene, parent):
    shore = scene.node(parent, "rocks")
    for i in range(14):
        angle = 2.4 * i + 0.3
        distance = 5.0 + 0.5 * math.sin(1.7 * i)
        x, z = round(distance * math.cos(angle), 3), round(distance * math.sin(angle), 3)
        if x > 1 and z > 2:
            continue
        size = 0.45 + 0.35 * abs(math.sin(2.1 * i))
        scene.node(shore, f"rock {i + 1}", "sphere", STONE, at=(x, round(height(x, z), 3), z),
                   size=(round(size * 1.3, 3), round(size * 0.8, 3), round(size, 3)), turn=around_y(50 * i))


def pier(scene, parent):
    landing = scene.node(parent, "pier", at=(2.3, 0.42, 3.6), turn=around_y(-50))
    planks = scene.node(landing, "planks")
    for i in range(13):
        scene.node(planks, f"plank {i + 1}", "box", WOOD, at=(round(0.36 * i, 2), 0, 0), size=(0.3, 0.08, 1.0))
    for side in (-0.42, 0.42):
        for i in range(4):
            scene.node(landing, "post", "cylinder", TRUNK, at=(round(0.4 + 1.3 * i, 2), -0.95, side), size=(0.14, 1.35, 0.14))


def boat(scene, parent, name, color, **place):
    ship = scene.node(parent, name, **place)
    scene.node(ship, "hull", "hull", color, at=(0, -0.15, 0), size=(2.2, 0.55, 1.1))
    scene.node(ship, "deck", "box", WOOD, at=(-0.2, 0.4, 0), size=(1.2, 0.06, 0.6))
    scene.node(ship, "mast", "cylinder", TRUNK, at=(0.15, 0.35, 0), size=(0.09, 2.5, 0.09))
    scene.node(ship, "main sail", "sail", WHITE, at=(0.1, 0.65, 0), size=(1.15, 2.0, 1.0))
    scene.node(ship, "jib", "sail", color, at=(0.2, 0.65, 0), size=(-0.8, 1.6, 0.8))
    scene.node(ship, "pennant", "sail", RED, at=(0.15, 2.72, 0), size=(0.5, 0.2, 0.4))


def boats(scene, parent):
    fleet = scene.node(parent, "boats")
    boat(scene, fleet, "moored boat", NAVY, at=(6.2, 0.05, 4.6), turn=around_y(-50))
    # The other way round: a mirror image.
    boat(scene, fleet, "mirrored boat", RED, at=(-6.0, 0.05, 6.0), size=(-1, 1, 1), turn=around_y(-25))
    # Leaning in the wind without turning: a shear.
    gust = scene.node(fleet, "gust", at=(6.9, 0.05, -3.6), turn=around_y(65))
    leaning = scene.node(gust, "shear", matrix=shear_z_by_y(0.3))
    boat(scene, leaning, "leaning boat", YELLOW, size=0.9)


def sky(scene, parent):
    clouds = scene.node(parent, "clouds")
    for i, (x, y, z) in enumerate(((4.4, 6.2, -4.6), (-5.6, 5.4, -3.6), (6.0, 4.7, 1.6))):
        cloud = scene.node(clouds, f"cloud {i + 1}", at=(x, y, z), turn=around_y(35))
        for j, (dx, dy, size) in enumerate(((-0.85, -0.08, 0.95), (0, 0.12, 1.35), (0.9, -0.05, 1.0), (1.55, -0.15, 0.6))):
            scene.node(cloud, f"puff {j + 1}", "sphere", WHITE, at=(dx, dy, 0.12 * j), size=(size * 1.25, size * 0.8, size))


def buoy(scene, parent):
    mark = scene.node(parent, "buoy", at=(-0.6, 0, 7.2), turn=around_z(9))
    scene.node(mark, "float", "cylinder", RED, at=(0, -0.15, 0), size=(0.75, 0.4, 0.75))
    scene.node(mark, "body", "frustum", WHITE, at=(0, 0.25, 0), size=(0.5, 0.5, 0.5))
    scene.node(mark, "top", "frustum", RED, at=(0, 0.75, 0), size=(0.42, 0.4, 0.42))
    scene.node(mark, "lamp", "sphere", LIGHT, at=(0, 1.24, 0), size=0.22)


def write_demo(path):
    scene = Gltf()
    for name, shape in (("box", box()), ("cylinder", frustum(0.5)), ("frustum", frustum(0.46)), ("cone", frustum(0)),
                        ("sphere", sphere()), ("roof", roof()), ("hull", hull()), ("sail", sail()),
                        ("island", island()), ("water", water())):
        scene.shape(name, shape)
    root = scene.node(None, "harbour")
    scene.node(root, "sea", "water", "#ffffff")
    land = scene.node(root, "island")
    scene.node(land, "ground", "island", "#ffffff")
    lighthouse(scene, land)
    house(scene, land)
    trees(scene, land)
    rocks(scene, land)
    pier(scene, land)
    boats(scene, root)
    buoy(scene, root)
    sky(scene, root)
    scene.write(path)


# --- a globe in a glass case on a crate: images and transparency ---------------------------------------------------------

def png(width, height, palette, pixel):
    """An image file of up to 16 colours; `pixel` gives the number of the colour at (x, y), counted from the upper left."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + bytes(pixel(x, y) << 4 | pixel(x + 1, y) for x in range(0, width, 2)) for y in range(height))
    colors = b"".join(bytes(int(color[i:i + 2], 16) for i in (1, 3, 5)) for color in palette)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 4, 3, 0, 0, 0)) +
            chunk(b"PLTE", colors) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def crate_image():
    """Boards in a frame, and a letter that tells which way is up."""
    size, frame = 128, 14
    letter = ("####", "#...", "###.", "#...", "#...")

    def pixel(x, y):
        if min(x, y, size - 1 - x, size - 1 - y) < frame:
            return 2 if min(x, y, size - 1 - x, size - 1 - y) in (0, frame - 1) else 1
        column, row = (x - 40) // 12, (y - 34) // 12
        if 0 <= column < 4 and 0 <= row < 5 and letter[row][column] == "#":
            return 3
        return 2 if (y - frame) % 20 == 0 else (4 if (x * 7 + (y // 20) * 31) % 53 == 0 else 0)

    return png(size, size, ("#c89b62", "#a8703f", "#7d5837", "#464c56", "#b98a52"), pixel)


def globe_image():
    """Invented lands in a sea, with ice at the poles and a line every 30 degrees."""
    width, height = 256, 128

    def pixel(x, y):
        lon, lat = 2 * math.pi * x / width + 2.4, math.pi * (0.5 - (y + 0.5) / height)
        land = (math.sin(2 * lon + 1.3 * math.sin(3 * lat)) * math.cos(1.5 * lat) + 0.6 * math.sin(3 * lon - 2 * lat + 1) +
                0.35 * math.sin(7 * lon + 5 * lat) * math.cos(3 * lat))
        if abs(lat) > 1.25 + 0.06 * math.sin(5 * lon):
            return 3
        if land > 0.3:
            return 2 if land > 0.95 else 1
        return 4 if x % (width // 12) == 0 or abs((lat / math.radians(30) + 0.5) % 1 - 0.5) < 0.02 else 0

    return png(width, height, ("#3d78b4", "#58a85f", "#c2a35c", "#f4f1ea", "#5b92c8"), pixel)


def write_display(path, image):
    with open(os.path.join(os.path.dirname(path), image), "wb") as file:
        file.write(crate_image())
    scene = Gltf()
    for name, shape in (("box", box()), ("crate", crate()), ("globe", sphere(32, 16, is_mapped=True)), ("cylinder", frustum(0.5))):
        scene.shape(name, shape)
    scene.texture("boards", image)
    scene.texture("map", globe_image())
    scene.glass("glass", "#b8dce8", 0.3)
    root = scene.node(None, "display")
    scene.node(root, "floor", "cylinder", STONE, at=(0, -0.12, 0), size=(4.2, 0.12, 4.2))
    pile = scene.node(root, "crates", at=(0, 0.6, 0))
    scene.node(pile, "large crate", "crate", "boards", size=1.2)
    scene.node(pile, "small crate", "crate", "boards", at=(1.25, -0.25, 0.55), size=0.7, turn=around_y(-28))
    exhibit = scene.node(root, "exhibit", at=(0, 1.2, 0))
    scene.node(exhibit, "foot", "cylinder", DARK, size=(0.5, 0.08, 0.5))
    scene.node(exhibit, "rod", "cylinder", DARK, at=(0, 0.08, 0), size=(0.06, 0.12, 0.06))
    scene.node(exhibit, "globe", "globe", "map", at=(0, 0.6, 0), size=0.84, turn=around_z(-23))
    scene.node(exhibit, "case", "box", "glass", at=(0, 0.58, 0), size=(1.1, 1.16, 1.1))
    scene.write(path)


# --- the small samples ----------------------------------------------------------------------------------------------------

def write_obj(path):
    """An angle bracket of two plates and a rib, in two materials, and a polyline around it."""
    parts = []

    def block(name, material, low, high):
        corners = [(x, y, z) for x in (low[0], high[0]) for y in (low[1], high[1]) for z in (low[2], high[2])]
        faces = ((1, 2, 4, 3), (5, 7, 8, 6), (1, 5, 6, 2), (3, 4, 8, 7), (1, 3, 7, 5), (2, 6, 8, 4))
        parts.append((name, material, corners, faces))

    block("base", "steel", (0, 0, 0), (4, 0.4, 3))
    block("wall", "steel", (0, 0.4, 0), (0.4, 3.4, 3))
    parts.append(("rib", "brass", [(0.4, 0.4, 1.3), (3.2, 0.4, 1.3), (0.4, 2.8, 1.3), (0.4, 0.4, 1.7), (3.2, 0.4, 1.7),
                                   (0.4, 2.8, 1.7)], ((1, 3, 2), (4, 5, 6), (2, 3, 6, 5), (1, 2, 5, 4), (1, 4, 6, 3))))
    lines = ["# An angle bracket.", "mtllib bracket.mtl"]
    first = 1
    for name, material, corners, faces in parts:
        lines += [f"o {name}", f"usemtl {material}"]
        lines += ["v " + " ".join(f"{c:g}" for c in corner) for corner in corners]
        lines += ["f " + " ".join(str(i + first - 1) for i in face) for face in faces]
        first += len(corners)
    with open(path, "w", encoding="utf-8") as file:
        file.write("\n".join(lines) + "\n")
    with open(os.path.splitext(path)[0] + ".mtl", "w", encoding="utf-8") as file:
        file.write("newmtl steel\nKd 0.55 0.62 0.70\nnewmtl brass\nKd 0.86 0.66 0.28\n")


def write_ply(path):
    """Ripples with colours at the vertices."""
    count = 27
    vertices, faces = [], []
    for i in range(count):
        for j in range(count):
            x, z = (i / (count - 1) - 0.5) * 4, (j / (count - 1) - 0.5) * 4
            distance = math.hypot(x, z)
            y = 0.45 * math.cos(4 * distance) * math.exp(-0.6 * distance)
            color = mixed((0.16, 0.28, 0.62), (0.98, 0.80, 0.30), y / 0.7 + 0.42)
            vertices.append(f"{x:.4g} {y:.4g} {z:.4g} " + " ".join(str(round(255 * c)) for c in color))
    for i in range(count - 1):
        for j in range(count - 1):
            a = i * count + j
            faces.append(f"4 {a} {a + 1} {a + count + 1} {a + count}")
    header = ["ply", "format ascii 1.0", "comment ripples", f"element vertex {len(vertices)}", "property float x",
              "property float y", "property float z", "property uchar red", "property uchar green", "property uchar blue",
              f"element face {len(faces)}", "property list uchar int vertex_indices", "end_header"]
    with open(path, "w", encoding="utf-8") as file:
        file.write("\n".join(header + vertices + faces) + "\n")


def write_stl(path):
    """A trefoil knot as a tube, binary."""
    def centre(t):
        return ((2 + math.cos(3 * t)) * math.cos(2 * t), (2 + math.cos(3 * t)) * math.sin(2 * t), math.sin(3 * t))

    around, along, radius = 10, 60, 0.5
    rings = []
    for i in range(along):
        t = 2 * math.pi * i / along
        here = centre(t)
        forward = unit(sub(centre(t + 1e-3), here))
        side = unit(cross(forward, (0.0, 0.0, 1.0)))
        up = cross(side, forward)
        rings.append([add(here, add(scaled(side, radius * math.cos(a)), scaled(up, radius * math.sin(a))))
                      for a in (2 * math.pi * k / around for k in range(around))])
    triangles = []
    for i in range(along):
        for k in range(around):
            a, b = rings[i][k], rings[(i + 1) % along][k]
            c, d = rings[(i + 1) % along][(k + 1) % around], rings[i][(k + 1) % around]
            triangles += [(a, c, b), (a, d, c)]
    with open(path, "wb") as file:
        file.write(b"trefoil knot".ljust(80, b" ") + struct.pack("<I", len(triangles)))
        for a, b, c in triangles:
            file.write(struct.pack("<12fH", *unit(cross(sub(b, a), sub(c, a))), *a, *b, *c, 0))


def write_sign(path):
    """A compass rose with smooth edges, transparent around it: 128 by 128 pixels."""
    size, fine = 128, 4

    def inside(x, y):
        radius, angle = math.hypot(x, y), math.atan2(x, y)
        ring = 0.80 < radius < 0.86
        long_point = radius < 0.98 * (1 - 1.9 * abs(math.remainder(angle, math.pi / 2)))
        short_point = radius < 0.66 * (1 - 2.3 * abs(math.remainder(angle - math.pi / 4, math.pi / 2)))
        return ring or long_point or short_point or radius < 0.14

    def pixel(column, row):
        hits = sum(inside((column + (i + 0.5) / fine) * 2 / size - 1, 1 - (row + (k + 0.5) / fine) * 2 / size)
                   for i in range(fine) for k in range(fine))
        north = row < size / 2 and abs(column - size / 2) < (row + 4) / 6
        return bytes((*((190, 60, 50) if north else (45, 65, 90)), 255 * hits // (fine * fine)))

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + b"".join(pixel(x, y) for x in range(size)) for y in range(size))
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0)) +
                   chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


if __name__ == "__main__":
    write_sign(os.path.join(FOLDER, "sign.png"))
    write_demo(os.path.join(FOLDER, "demo.glb"))
    write_display(os.path.join(FOLDER, "display.glb"), "crate.png")
    write_obj(os.path.join(FOLDER, "bracket.obj"))
    write_ply(os.path.join(FOLDER, "wave.ply"))
    write_stl(os.path.join(FOLDER, "knot.stl"))
