#include "framework/library/MaterialReader.h"

#include "framework/library/GltfCheck.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QString>
#include <QUrl>

#include <assimp/GltfMaterial.h>
#include <assimp/material.h>
#include <assimp/scene.h>
#include <assimp/texture.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <span>
#include <string_view>
#include <system_error>

namespace Qor::Chart::Library {

using Types::Color4f;

namespace {

using namespace Ogl::Tokens;

float Channel(float p_value) {
    return std::isfinite(p_value) ? std::clamp(p_value, 0.0F, 1.0F) : 1.0F;
}

/// An intensity of light as a value to show: the transfer function of sRGB (IEC 61966-2-1).
float FromIntensity(float p_intensity) {
    double const intensity = p_intensity;
    return static_cast<float>(
        intensity <= 0.0031308 ? 12.92 * intensity : 1.055 * std::pow(intensity, 1 / 2.4) - 0.055);
}

aiTextureType TextureOf(aiMaterial const& p_material) {
    return p_material.GetTextureCount(aiTextureType_BASE_COLOR) != 0 ? aiTextureType_BASE_COLOR : aiTextureType_DIFFUSE;
}

Ogl::Token WrapOf(aiMaterial const& p_material, char const* p_key, aiTextureType p_type) {
    int mode = aiTextureMapMode_Wrap;
    p_material.Get(p_key, p_type, 0, mode);
    switch (mode) {
    case aiTextureMapMode_Clamp:
        return AGL_CLAMP_TO_EDGE;
    case aiTextureMapMode_Mirror:
        return AGL_MIRRORED_REPEAT;
    case aiTextureMapMode_Decal:
        return AGL_CLAMP_TO_BORDER;
    default:
        return AGL_REPEAT;
    }
}

Ogl::TextureSampling SamplingOf(aiMaterial const& p_material, aiTextureType p_type) {
    Ogl::TextureSampling sampling = MeshFile::Surface().sampling;
    sampling.wrapS = WrapOf(p_material, _AI_MATKEY_MAPPINGMODE_U_BASE, p_type);
    sampling.wrapT = WrapOf(p_material, _AI_MATKEY_MAPPINGMODE_V_BASE, p_type);
    Ogl::TextureSampling asked = sampling;
    int filter = 0;
    if (p_material.Get(AI_MATKEY_GLTF_MAPPINGFILTER_MIN(p_type, 0), filter) == aiReturn_SUCCESS && filter != 0) {
        asked.minification = static_cast<Ogl::Token>(filter);
    }
    if (p_material.Get(AI_MATKEY_GLTF_MAPPINGFILTER_MAG(p_type, 0), filter) == aiReturn_SUCCESS && filter != 0) {
        asked.magnification = static_cast<Ogl::Token>(filter);
    }
    return asked.IsValid() ? asked : sampling;
}

/// What files made on other machines write for a path, as this one takes it.
std::string WithSlashes(std::string p_path) {
    std::ranges::replace(p_path, '\\', '/');
    return p_path;
}

std::string FromUri(std::string const& p_path) {
    return QUrl::fromPercentEncoding(QByteArray::fromStdString(p_path)).toStdString();
}

/// Raw pixels as an image file, so that all images of a file are alike.
std::vector<std::byte> Encoded(aiTexture const& p_image) {
    constexpr int fast = 80;
    // The channels are in the order in which QImage has them in memory.
    QImage const image(reinterpret_cast<uchar const*>(p_image.pcData), static_cast<int>(p_image.mWidth),
        static_cast<int>(p_image.mHeight), QImage::Format_ARGB32);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", fast);
    auto const encoded = std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    return {encoded.begin(), encoded.end()};
}

} // namespace

MaterialReader::MaterialReader(qorfile::filepath const& p_path, aiScene const& p_scene)
    : _path(p_path), _scene(p_scene), _isGltf(GltfCheck::IsGltf(p_path.string())) {}

MaterialReader::Material MaterialReader::Read(aiMaterial const& p_material) const {
    Material material;
    aiString name;
    p_material.Get(AI_MATKEY_NAME, name);
    material.name = name.C_Str();
    ReadTexture(p_material, material);
    material.color = ColorOf(p_material, !material.surface.texture.empty());
    ReadAlpha(p_material, material);
    return material;
}

Color4f MaterialReader::Shown(aiColor4D const& p_color) const {
    Color4f const color{Channel(p_color.r), Channel(p_color.g), Channel(p_color.b), Channel(p_color.a)};
    if (!_isGltf) {
        return color;
    }
    return {FromIntensity(color.red), FromIntensity(color.green), FromIntensity(color.blue), color.alpha};
}

/// Opacity is kept apart by some formats and part of the colour in others; an opacity of nothing is what several
/// exporters write for an opaque material.
Color4f MaterialReader::ColorOf(aiMaterial const& p_material, bool p_textured) const {
    aiColor4D color(1, 1, 1, 1);
    p_material.Get(AI_MATKEY_COLOR_DIFFUSE, color);
    float opacity = 1;
    if (color.a == 1 && p_material.Get(AI_MATKEY_OPACITY, opacity) == aiReturn_SUCCESS && opacity > 0) {
        color.a = opacity;
    }
    // Outside glTF the importer gives a material without a colour this grey, and exporters write black where the
    // texture stands in place of a colour.
    constexpr float unset = 0.6F;
    aiColor3D const factor(color.r, color.g, color.b);
    if (p_textured && !_isGltf && (factor == aiColor3D(unset, unset, unset) || factor == aiColor3D(0, 0, 0))) {
        color = aiColor4D(1, 1, 1, color.a);
    }
    return Shown(color);
}

/// Formats that say nothing of alpha say nothing of sides either: what the importer gives for them is a default.
void MaterialReader::ReadAlpha(aiMaterial const& p_material, Material& p_result) const {
    MeshFile::Surface& surface = p_result.surface;
    aiString mode;
    if (p_material.Get(AI_MATKEY_GLTF_ALPHAMODE, mode) != aiReturn_SUCCESS) {
        return;
    }
    int twoSided = 1;
    surface.isOneSided = p_material.Get(AI_MATKEY_TWOSIDED, twoSided) == aiReturn_SUCCESS && twoSided == 0;
    float cutoff = surface.alphaCutoff;
    p_material.Get(AI_MATKEY_GLTF_ALPHACUTOFF, cutoff);
    surface.alphaCutoff = Channel(cutoff);
    std::string_view const text(mode.C_Str());
    surface.alphaMode = text == "OPAQUE" ? MeshFile::AlphaMode::Opaque
        : text == "MASK"                 ? MeshFile::AlphaMode::Mask
                                         : MeshFile::AlphaMode::Blend;
    if (surface.alphaMode == MeshFile::AlphaMode::Opaque) {
        p_result.color.alpha = 1;
    }
}

void MaterialReader::ReadTexture(aiMaterial const& p_material, Material& p_result) const {
    aiTextureType const type = TextureOf(p_material);
    aiString reference;
    if (p_material.GetTexture(type, 0, &reference) != aiReturn_SUCCESS) {
        return;
    }
    int coordinates = 0;
    p_material.Get(AI_MATKEY_UVWSRC(type, 0), coordinates);
    p_result.coordinates = static_cast<std::size_t>(std::max(coordinates, 0));
    p_result.transform = TransformOf(p_material, type);
    p_result.surface.sampling = SamplingOf(p_material, type);
    ReadImage(reference.C_Str(), p_result);
    p_result.lacksImage = p_result.surface.texture.empty();
}

void MaterialReader::ReadImage(std::string const& p_reference, Material& p_result) const {
    if (p_reference.empty()) {
        return;
    }
    auto const [image, number] = _scene.GetEmbeddedTextureAndIndex(p_reference.c_str());
    if (image && number >= 0) {
        p_result.image = static_cast<std::size_t>(number);
        p_result.surface.texture = _path.string() + "#*" + std::to_string(number);
    } else if (!p_reference.starts_with('*')) {
        p_result.surface.texture = Find(p_reference);
    }
}

/// The file that a path in the model file means: as it is written, as a URI, or by its name alone beside the model.
/// What is written when there is none of these.
std::string MaterialReader::Find(std::string const& p_reference) const {
    namespace fs = std::filesystem;
    fs::path const folder = fs::path(_path.string()).parent_path();
    std::string const plain = WithSlashes(p_reference);
    std::string const decoded = FromUri(plain);
    for (std::string const& path : {p_reference, plain, decoded, fs::path(decoded).filename().string()}) {
        std::error_code failed;
        if (fs::path const file = folder / path; fs::is_regular_file(file, failed)) {
            return file.lexically_normal().string();
        }
    }
    return (folder / decoded).lexically_normal().string();
}

MaterialReader::TextureTransform MaterialReader::TransformOf(aiMaterial const& p_material, int p_type) const {
    aiUVTransform given;
    if (p_material.Get(_AI_MATKEY_UVTRANSFORM_BASE, static_cast<unsigned>(p_type), 0, given) != aiReturn_SUCCESS) {
        return {};
    }
    float const x = given.mScaling.x;
    float const y = given.mScaling.y;
    TextureTransform transform;
    if (_isGltf) {
        // Turned and scaled around the upper left corner. What the importer gives as the shift holds a part of its own,
        // which is taken out here (glTF 2.0 extension KHR_texture_transform).
        float const c = std::cos(-given.mRotation);
        float const s = std::sin(-given.mRotation);
        float const shiftX = given.mTranslation.x - x * (1 - c + s) / 2;
        float const shiftY = y * (s + c - 1) / 2 + 1 - y - given.mTranslation.y;
        transform.s = {c * x, -s * y, shiftX + s * y};
        transform.t = {s * x, c * y, 1 - shiftY - c * y};
    } else {
        // Turned around the centre of the image.
        float const c = std::cos(given.mRotation);
        float const s = std::sin(given.mRotation);
        transform.s = {c * x, -s * y, (1 - c + s) / 2 + given.mTranslation.x};
        transform.t = {s * x, c * y, (1 - c - s) / 2 + given.mTranslation.y};
    }
    auto const isFinite = [](std::array<float, 3> const& p_row) {
        return std::ranges::all_of(p_row, [](float p_value) { return std::isfinite(p_value); });
    };
    return isFinite(transform.s) && isFinite(transform.t) ? transform : TextureTransform();
}

std::vector<std::byte> MaterialReader::BytesOf(aiTexture const& p_image) {
    if (!p_image.pcData || p_image.mWidth == 0) {
        return {};
    }
    if (p_image.mHeight != 0) {
        return Encoded(p_image);
    }
    auto const* const bytes = reinterpret_cast<std::byte const*>(p_image.pcData);
    return {bytes, bytes + p_image.mWidth};
}

} // namespace Qor::Chart::Library
