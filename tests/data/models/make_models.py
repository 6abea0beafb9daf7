#!/usr/bin/env python3
"""Writes the small model files beside it, good ones and broken ones, as the tests expect them."""
import base64
import json
import struct
import zlib
from pathlib import Path

HERE = Path(__file__).resolve().parent

CUBE = [(x, y, z) for z in (-0.5, 0.5) for y in (-0.5, 0.5) for x in (-0.5, 0.5)]
# Quads, counter-clockwise from outside.
CUBE_QUADS = [(0, 2, 3, 1), (4, 5, 7, 6), (0, 1, 5, 4), (2, 6, 7, 3), (0, 4, 6, 2), (1, 3, 7, 5)]
CUBE_TRIANGLES = [t for a, b, c, d in CUBE_QUADS for t in ((a, b, c), (a, c, d))]
TETRA = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)]
TETRA_TRIANGLES = [(0, 2, 1), (0, 1, 3), (1, 2, 3), (0, 3, 2)]


def text(name, content):
    (HERE / name).write_text(content, encoding="utf-8")


def data(name, content):
    (HERE / name).write_bytes(content)


class Buffer:
    """The binary part of a glTF file, with its views and accessors."""

    def __init__(self):
        self.bytes, self.views, self.accessors = b"", [], []

    def add(self, rows, kind, code, component, limits=False):
        width = {"SCALAR": 1, "VEC2": 2, "VEC3": 3, "VEC4": 4}[kind]
        flat = [v for row in rows for v in (row if width > 1 else (row,))]
        packed = struct.pack(f"<{len(flat)}{code}", *flat)
        self.views.append({"buffer": 0, "byteOffset": len(self.bytes), "byteLength": len(packed)})
        accessor = {"bufferView": len(self.views) - 1, "componentType": component, "count": len(rows), "type": kind}
        if limits:
            accessor["min"] = [min(c) for c in zip(*rows)]
            accessor["max"] = [max(c) for c in zip(*rows)]
        self.accessors.append(accessor)
        self.bytes += packed + b"\0" * (-len(packed) % 4)
        return len(self.accessors) - 1

    def positions(self, rows):
        return self.add(rows, "VEC3", "f", 5126, True)

    def colors(self, rows):
        return self.add(rows, "VEC4", "f", 5126)

    def indices(self, values):
        return self.add(values, "SCALAR", "H", 5123)


def scene(cube_indices=None):
    """A root with a red cube, a mirrored child, a sheared grandchild, and a node of lines and points."""
    b = Buffer()
    cube = b.positions(CUBE)
    cube_indices = b.indices([i for t in CUBE_TRIANGLES for i in t] if cube_indices is None else cube_indices)
    tetra = b.positions(TETRA)
    tetra_colors = b.colors([(1, 0, 0, 1), (0, 1, 0, 1), (0, 0, 1, 1), (1, 1, 1, 1)])
    tetra_indices = b.indices([i for t in TETRA_TRIANGLES for i in t])
    line = b.positions([(0, 0, 0), (1, 0, 0), (1, 1, 0)])
    points = b.positions([(0, 0, 2), (1, 0, 2)])
    document = {
        "asset": {"version": "2.0", "generator": "make_models.py"},
        "scene": 0,
        "scenes": [{"nodes": [0]}],
        "nodes": [
            {"name": "car", "children": [1, 2, 4]},
            {"name": "body", "mesh": 0, "translation": [10, 0, 0]},
            {"name": "mirrored", "mesh": 0, "scale": [-2, 1, 1], "children": [3]},
            {"name": "sheared", "mesh": 1, "rotation": [0, 0, 0.38268343, 0.92387953]},
            {"name": "wires", "mesh": 2},
        ],
        "materials": [
            {"name": "red paint", "pbrMetallicRoughness": {"baseColorFactor": [1, 0, 0, 1]}},
            {"name": "glass", "alphaMode": "BLEND", "pbrMetallicRoughness": {"baseColorFactor": [0.5, 1, 1, 0.25]}},
        ],
        "meshes": [
            {"name": "box", "primitives": [{"attributes": {"POSITION": cube}, "indices": cube_indices, "material": 0}]},
            {"name": "wedge", "primitives": [{"attributes": {"POSITION": tetra, "COLOR_0": tetra_colors},
                                              "indices": tetra_indices, "material": 1}]},
            {"name": "wire", "primitives": [{"attributes": {"POSITION": line}, "mode": 3},
                                            {"attributes": {"POSITION": points}, "mode": 0}]},
        ],
        "buffers": [{"byteLength": len(b.bytes)}],
        "bufferViews": b.views,
        "accessors": b.accessors,
    }
    return document, b.bytes


def gltf(name, document, binary):
    document["buffers"][0]["uri"] = "data:application/octet-stream;base64," + base64.b64encode(binary).decode()
    text(name, json.dumps(document, indent=1) + "\n")


def png(rows):
    """An image of the given rows of colours, the uppermost first."""
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

    pixels = b"".join(b"\0" + bytes(c for pixel in row for c in pixel) for row in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 2, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b""))


def textured():
    """Squares side by side along x, each with a material that says something else of its texture or transparency."""
    quarters = png([[(255, 0, 0), (0, 255, 0)], [(0, 0, 255), (255, 255, 255)]])
    data("four quarters.png", quarters)
    embedded = "data:image/png;base64,"
    images = ["four%20quarters.png", embedded + base64.b64encode(quarters).decode(),
              embedded + base64.b64encode(quarters[:50]).decode(), "missing.png", embedded + "####"]
    turned = {"offset": [0.25, 0.5], "rotation": 0.92729522, "scale": [2, 1]}
    masked = {"alphaCutoff": 0.25, "alphaMode": "MASK", "doubleSided": True}
    squares = [("external", {"index": 0}, [1, 1, 1, 1], {}), ("embedded", {"index": 1, "texCoord": 1}, [1, 0, 0, 1], masked),
               ("turned", {"index": 0, "extensions": {"KHR_texture_transform": turned}}, [1, 1, 1, 1], {}),
               ("truncated", {"index": 2}, [1, 1, 1, 1], {}), ("missing", {"index": 3}, [1, 1, 1, 1], {}),
               ("garbage", {"index": 4}, [1, 1, 1, 1], {}), ("not a number", {"index": 0, "texCoord": 2}, [1, 1, 1, 1], {}),
               ("no coordinates", {"index": 0, "texCoord": 5}, [1, 1, 1, 0.5], {"alphaMode": "BLEND"}),
               ("opaque", None, [1, 1, 1, 0.5], {})]
    b = Buffer()
    corners = [(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0)]
    attributes = {"POSITION": b.positions(corners)}
    for i, places in enumerate(([(0, 1), (1, 1), (1, 0), (0, 0)], [(1, 0)] * 4, [(float("nan"), 0)] * 4)):
        attributes[f"TEXCOORD_{i}"] = b.add(places, "VEC2", "f", 5126)
    indices = b.indices([0, 1, 2, 0, 2, 3])
    materials = []
    for name, texture, color, more in squares:
        look = {"baseColorFactor": color, **({"baseColorTexture": texture} if texture else {})}
        materials.append({"name": name, "pbrMetallicRoughness": look, **more})
    return {
        "asset": {"version": "2.0", "generator": "make_models.py"}, "extensionsUsed": ["KHR_texture_transform"],
        "scene": 0, "scenes": [{"nodes": [0]}],
        "nodes": [{"name": "wall", "children": list(range(1, len(squares) + 1))}] +
                 [{"mesh": i, "translation": [1.1 * i, 0, 0]} for i in range(len(squares))],
        "materials": materials,
        "meshes": [{"name": square[0], "primitives": [{"attributes": attributes, "indices": indices, "material": i}]}
                   for i, square in enumerate(squares)],
        "images": [{"uri": uri} for uri in images],
        "samplers": [{}, {"wrapS": 33071, "wrapT": 33648, "magFilter": 9728, "minFilter": 9985}],
        "textures": [{"source": i, "sampler": int(i == 1)} for i in range(len(images))],
        "buffers": [{"byteLength": len(b.bytes)}], "bufferViews": b.views, "accessors": b.accessors,
    }, b.bytes


def glb(document, binary):
    document["buffers"][0].pop("uri", None)
    head = json.dumps(document, separators=(",", ":")).encode()
    head += b" " * (-len(head) % 4)
    chunks = struct.pack("<II", len(head), 0x4E4F534A) + head + struct.pack("<II", len(binary), 0x004E4942) + binary
    return struct.pack("<4sII", b"glTF", 2, 12 + len(chunks)) + chunks


def ply(name, vertices, faces, colors=None):
    lines = ["ply", "format ascii 1.0", f"element vertex {len(vertices)}"]
    lines += [f"property float {axis}" for axis in "xyz"]
    lines += [f"property uchar {channel}" for channel in ("red", "green", "blue")] if colors else []
    lines += [f"element face {len(faces)}", "property list uchar int vertex_indices"] if faces is not None else []
    lines += ["end_header"]
    for i, vertex in enumerate(vertices):
        lines.append(" ".join(map(str, vertex + (colors[i] if colors else ()))))
    lines += [" ".join(map(str, (len(face),) + face)) for face in faces or []]
    text(name, "\n".join(lines) + "\n")


def normal(a, b, c):
    u, v = [b[i] - a[i] for i in range(3)], [c[i] - a[i] for i in range(3)]
    n = [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]
    length = sum(x * x for x in n) ** 0.5
    return tuple(x / length for x in n)


def stl():
    lines, packed = ["solid tetra"], struct.pack("<80sI", b"tetra", len(TETRA_TRIANGLES))
    for triangle in TETRA_TRIANGLES:
        corners = [TETRA[i] for i in triangle]
        n = normal(*corners)
        lines += ["facet normal %g %g %g" % n, "outer loop"]
        lines += ["vertex %g %g %g" % corner for corner in corners]
        lines += ["endloop", "endfacet"]
        packed += struct.pack("<12fH", *n, *[x for corner in corners for x in corner], 0)
    text("tetra.stl", "\n".join(lines + ["endsolid tetra"]) + "\n")
    data("tetra_binary.stl", packed)
    data("truncated.stl", packed[:150])


def obj():
    lines = ["mtllib cube.mtl", "o cube"] + ["v %g %g %g" % v for v in CUBE] + ["usemtl green"]
    lines += ["f " + " ".join(str(i + 1) for i in quad) for quad in CUBE_QUADS]
    text("cube.obj", "\n".join(lines) + "\n")
    text("cube.mtl", "newmtl green\nKd 0 0.5 0\nd 0.75\n")
    text("nan.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv nan 0 0\nv 1e39 0 0\nf 1 2 3\nf 1 2 4\nf 1 3 5\n")
    text("badindex.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\nf 1 2 99\n")
    text("lines.obj", "v 0 0 0\nv 1 0 0\nv 1 1 0\nl 1 2 3\n")
    text("nothing.obj", "# no mesh in here\nv 0 0 0\n")
    text("unknown.nosuchformat", "what is this\n")
    text("garbage.gltf", "{ this is not JSON")
    data("garbage.glb", bytes((i * 73 + 11) % 256 for i in range(400)))
    text("empty.obj", "")


LEAF = """<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<library_images><image id="i"><init_from>four%20quarters.png</init_from></image></library_images>
<library_effects><effect id="e"><profile_COMMON>
<newparam sid="s"><surface type="2D"><init_from>i</init_from></surface></newparam>
<newparam sid="t"><sampler2D><source>s</source></sampler2D></newparam>
<technique sid="c"><lambert><diffuse><texture texture="t" texcoord="UV"/></diffuse></lambert></technique>
</profile_COMMON></effect></library_effects>
<library_materials><material id="m" name="leaf"><instance_effect url="#e"/></material></library_materials>
<library_geometries><geometry id="g"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 1 0 0 0 1 0</float_array><technique_common>
<accessor source="#pa" count="3" stride="3">
<param name="X" type="float"/><param name="Y" type="float"/><param name="Z" type="float"/></accessor>
</technique_common></source>
<source id="u"><float_array id="ua" count="6">0 0 1 0 0 1</float_array><technique_common>
<accessor source="#ua" count="3" stride="2"><param name="S" type="float"/><param name="T" type="float"/></accessor>
</technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1" material="m"><input semantic="VERTEX" source="#v" offset="0"/>
<input semantic="TEXCOORD" source="#u" offset="0" set="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="w"><node name="leaf"><instance_geometry url="#g"><bind_material>
<technique_common><instance_material symbol="m" target="#m"/></technique_common>
</bind_material></instance_geometry></node></visual_scene></library_visual_scenes>
<scene><instance_visual_scene url="#w"/></scene>
</COLLADA>
"""


def main():
    document, binary = scene()
    whole = glb(document, binary)
    data("scene.glb", whole)
    data("truncated.glb", whole[:len(whole) // 2])
    gltf("scene.gltf", document, binary)
    gltf("badindex.gltf", *scene([0, 2, 3, 0, 3, 60000]))
    gltf("textured.gltf", *textured())
    document, binary = scene()
    document["bufferViews"][0]["byteOffset"] = 2 ** 64 - 50
    gltf("farview.gltf", document, binary)
    ply("tetra.ply", TETRA, TETRA_TRIANGLES, [(255, 0, 0), (0, 255, 0), (0, 0, 255), (255, 255, 255)])
    ply("points.ply", TETRA, None, [(255, 0, 0)] * 4)
    ply("badindex.ply", TETRA, TETRA_TRIANGLES + [(0, 1, 77)])
    ply("huge.ply", TETRA, TETRA_TRIANGLES)
    path = HERE / "huge.ply"
    path.write_text(path.read_text().replace("vertex 4", "vertex 4000000000"))
    obj()
    stl()
    text("leaf.dae", LEAF)


if __name__ == "__main__":
    main()
