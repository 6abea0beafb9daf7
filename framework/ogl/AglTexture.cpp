#include "framework/ogl/Agl.h"

#include "framework/ogl/TokenChecks.h"
#include "framework/types/TextureUnit.h"

#include <algorithm>

// Texture units.

namespace Qor::Chart::Ogl {

using namespace Tokens;

namespace {

constexpr std::size_t MaxForgottenTextures = 256;

bool IsEnvironment(Token p_mode) {
    return IsOneOf(p_mode, {AGL_MODULATE, AGL_REPLACE, AGL_DECAL, AGL_BLEND, AGL_ADD, AGL_COMBINE});
}

bool IsFunction(Token p_function, bool p_isRgb) {
    return IsOneOf(p_function, {AGL_REPLACE, AGL_MODULATE, AGL_ADD, AGL_ADD_SIGNED, AGL_INTERPOLATE, AGL_SUBTRACT}) ||
        (p_isRgb && IsOneOf(p_function, {AGL_DOT3_RGB, AGL_DOT3_RGBA}));
}

bool IsSource(Token p_source) {
    return IsOneOf(p_source, {AGL_TEXTURE, AGL_CONSTANT, AGL_PRIMARY_COLOR, AGL_PREVIOUS}) ||
        (p_source >= AGL_TEXTURE0 && p_source < AGL_TEXTURE0 + TextureUnitCount);
}

bool IsOperand(Token p_operand, bool p_isRgb) {
    return p_operand <= AGL_ONE_MINUS_SRC_ALPHA && p_operand >= (p_isRgb ? AGL_SRC_COLOR : AGL_SRC_ALPHA);
}

bool IsScale(float p_scale) {
    return p_scale == 1 || p_scale == 2 || p_scale == 4;
}

bool IsValid(CombinerState const& p_combiner, bool p_isRgb) {
    return IsFunction(p_combiner.function, p_isRgb) && IsScale(p_combiner.scale) &&
        std::all_of(p_combiner.sources.begin(), p_combiner.sources.end(), IsSource) &&
        std::all_of(p_combiner.operands.begin(), p_combiner.operands.end(),
            [p_isRgb](Token p_operand) { return IsOperand(p_operand, p_isRgb); });
}

CombinerState StateOf(Types::TextureUnit::Combiner const& p_combiner) {
    CombinerState state;
    state.function = static_cast<Token>(p_combiner.function);
    for (std::size_t i = 0; i < state.sources.size(); ++i) {
        state.sources[i] = static_cast<Token>(p_combiner.sources[i]);
        state.operands[i] = static_cast<Token>(p_combiner.operands[i]);
    }
    state.scale = p_combiner.scale;
    return state;
}

/// The field of a combiner that a parameter of it names, whose numbers start at p_function, p_source and p_operand; nullptr
/// when it names none.
Token* FieldOf(CombinerState& p_combiner, Token p_parameter, Token p_function, Token p_source, Token p_operand) {
    if (p_parameter == p_function) {
        return &p_combiner.function;
    }
    if (p_parameter >= p_source && p_parameter < p_source + 3) {
        return &p_combiner.sources[p_parameter - p_source];
    }
    if (p_parameter >= p_operand && p_parameter < p_operand + 3) {
        return &p_combiner.operands[p_parameter - p_operand];
    }
    return nullptr;
}

} // namespace

bool Agl::CheckUnit(char const* p_operation, Token p_unit) {
    if (p_unit >= AGL_TEXTURE0 && p_unit < AGL_TEXTURE0 + TextureUnitCount) {
        return true;
    }
    ErrorToken(p_operation, p_unit);
    return false;
}

void Agl::ActiveTexture(Token p_unit) {
    if (CheckOutside("ActiveTexture") && CheckUnit("ActiveTexture", p_unit)) {
        Assign(StateItem::TextureSelect, _state.textureSelect.activeUnit, std::uint32_t(p_unit - AGL_TEXTURE0));
    }
}

void Agl::BindTexture(std::shared_ptr<Texture const> const& p_texture) {
    if (CheckOutside("BindTexture")) {
        SetTexture(_state.textureSelect.activeUnit, p_texture);
    }
}

void Agl::SetTexture(std::size_t p_unit, std::shared_ptr<Texture const> const& p_texture) {
    bool const isUsable = p_texture && p_texture->IsValid();
    if (isUsable) {
        if (_boundTextures.size() >= MaxForgottenTextures) {
            std::erase_if(_boundTextures, [](auto const& p_entry) { return p_entry.second.expired(); });
        }
        _boundTextures[p_texture->Id()] = p_texture;
    }
    Assign(
        StateItem::Texture0 + p_unit, _state.textures[p_unit].texture, isUsable ? p_texture->Id() : std::uint64_t(0));
}

void Agl::TexEnv(Token p_parameter, Token p_value) {
    if (!CheckOutside("TexEnv")) {
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    if (p_parameter != AGL_TEXTURE_ENV_MODE) {
        SetCombiner(unit, p_parameter, p_value);
    } else if (IsEnvironment(p_value)) {
        Assign(StateItem::Texture0 + unit, _state.textures[unit].environment, p_value);
    } else {
        ErrorToken("TexEnv", p_value);
    }
}

void Agl::SetCombiner(std::size_t p_unit, Token p_parameter, Token p_value) {
    TextureUnitState& state = _state.textures[p_unit];
    TextureUnitState changed = state;
    Token* const rgb = FieldOf(changed.combineRgb, p_parameter, AGL_COMBINE_RGB, AGL_SOURCE0_RGB, AGL_OPERAND0_RGB);
    Token* const alpha =
        FieldOf(changed.combineAlpha, p_parameter, AGL_COMBINE_ALPHA, AGL_SOURCE0_ALPHA, AGL_OPERAND0_ALPHA);
    if (rgb == nullptr && alpha == nullptr) {
        ErrorToken("TexEnv", p_parameter);
        return;
    }
    *(rgb != nullptr ? rgb : alpha) = p_value;
    if (!IsValid(changed.combineRgb, true) || !IsValid(changed.combineAlpha, false)) {
        ErrorToken("TexEnv", p_value);
        return;
    }
    Assign(StateItem::Texture0 + p_unit, state.combineRgb, changed.combineRgb);
    Assign(StateItem::Texture0 + p_unit, state.combineAlpha, changed.combineAlpha);
}

void Agl::TexEnv(Token p_parameter, float p_scale) {
    if (!CheckOutside("TexEnv")) {
        return;
    }
    if (!IsOneOf(p_parameter, {AGL_RGB_SCALE, AGL_ALPHA_SCALE})) {
        ErrorToken("TexEnv", p_parameter);
        return;
    }
    if (!IsScale(p_scale)) {
        Error("TexEnv: the scale must be 1, 2 or 4; nothing is changed.");
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    TextureUnitState& state = _state.textures[unit];
    CombinerState& combiner = p_parameter == AGL_RGB_SCALE ? state.combineRgb : state.combineAlpha;
    Assign(StateItem::Texture0 + unit, combiner.scale, p_scale);
}

void Agl::TexEnv(Token p_parameter, Types::Color4f const& p_color) {
    if (!CheckOutside("TexEnv")) {
        return;
    }
    if (p_parameter != AGL_TEXTURE_ENV_COLOR) {
        ErrorToken("TexEnv", p_parameter);
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    Assign(StateItem::Texture0 + unit, _state.textures[unit].environmentColor, p_color);
}

void Agl::TexSampling(std::optional<TextureSampling> const& p_sampling) {
    if (!CheckOutside("TexSampling")) {
        return;
    }
    if (p_sampling && !p_sampling->IsValid()) {
        Error(
            "TexSampling: a filter or wrap is not a constant that it takes, or the bias or anisotropy is no number of "
            "its range; nothing is changed.");
        return;
    }
    std::uint32_t const unit = _state.textureSelect.activeUnit;
    TextureUnitState& state = _state.textures[unit];
    Assign(StateItem::Texture0 + unit, state.hasSampling, std::uint32_t(p_sampling.has_value()));
    Assign(StateItem::Texture0 + unit, state.sampling, p_sampling.value_or(TextureSampling()));
}

void Agl::Apply(Token p_unit, Types::TextureUnit const& p_value, std::shared_ptr<Texture const> const& p_texture) {
    if (!CheckOutside("Apply") || !CheckUnit("Apply", p_unit)) {
        return;
    }
    auto const unit = static_cast<std::size_t>(p_unit - AGL_TEXTURE0);
    auto const environment = static_cast<Token>(p_value.environment);
    CombinerState const rgb = StateOf(p_value.combineRgb);
    CombinerState const alpha = StateOf(p_value.combineAlpha);
    TextureSampling const sampling = TextureSampling::Of(p_value);
    if (!IsEnvironment(environment) || !IsValid(rgb, true) || !IsValid(alpha, false) || !sampling.IsValid()) {
        Error("Apply: the texture unit holds a value that it cannot have; nothing is changed.");
        return;
    }
    SetEnables(EnableBit::Texture0 << unit, p_value.enabled);
    SetTexture(unit, p_texture);
    TextureUnitState& state = _state.textures[unit];
    std::size_t const item = StateItem::Texture0 + unit;
    Assign(item, state.environment, environment);
    Assign(item, state.environmentColor, p_value.environmentColor);
    Assign(item, state.combineRgb, rgb);
    Assign(item, state.combineAlpha, alpha);
    Assign(item, state.hasSampling, std::uint32_t(1));
    Assign(item, state.sampling, sampling);
    if (!(_textureMatrices[unit].back() == p_value.matrix)) {
        _textureMatrices[unit].back() = p_value.matrix;
        _dirty |= StateBit(StateItem::TextureMatrix0 + unit);
    }
}

} // namespace Qor::Chart::Ogl
