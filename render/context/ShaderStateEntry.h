#pragma once

#include "framework/ogl/Agl.h"
#include "framework/ogl/Shader.h"
#include "framework/utility/Ensure.h"
#include "framework/utility/Scoped.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Qor::Chart::Render {

/// Which shader the nodes of a subtree draw with: how one is made, and the parameters to make it with. Copies share the
/// parameters and the shader made of them, so that handing an entry on costs two counts.
/// @tparam S      class of the shader, derived from `Ogl::Shader`
/// @tparam State  what tells one shader of the class from another
template <class S, class State>
class ShaderStateEntry {
public:
    using Factory = std::function<std::shared_ptr<S const>(Utility::Scoped<Ogl::Agl>&, State const&)>;

    /// An entry without a factory, which gives no shader.
    ShaderStateEntry() = default;
    ShaderStateEntry(Factory p_factory, State p_state)
        : _factory(p_factory ? std::make_shared<Factory const>(std::move(p_factory)) : nullptr)
        , _params(std::make_shared<ShaderParams>(std::move(p_state))) {}

    /// The shader to bind; it is made on the first call. Empty, and reported, without a factory.
    std::shared_ptr<Ogl::Shader const> operator()(Utility::Scoped<Ogl::Agl>& p_agl) const {
        if (!QOR_ENSURE(_factory))
            return {};
        if (!_params->shader || _params->maker != p_agl->Id()) {
            _params->shader = (*_factory)(p_agl, _params->state);
            _params->maker = p_agl->Id();
        }
        return _params->shader;
    }

    /// The shader for other parameters, made in the same way. The last few are kept with the entry.
    std::shared_ptr<Ogl::Shader const> operator()(Utility::Scoped<Ogl::Agl>& p_agl, State const& p_state) const {
        if (!QOR_ENSURE(_factory))
            return {};
        for (Variant const& variant : _params->variants) {
            if (variant.state == p_state && variant.maker == p_agl->Id())
                return variant.shader;
        }
        if (_params->variants.size() == MaxVariants)
            _params->variants.clear();
        _params->variants.push_back({p_state, (*_factory)(p_agl, p_state), p_agl->Id()});
        return _params->variants.back().shader;
    }

    /// An entry that makes its shaders in the same way, with other parameters.
    ShaderStateEntry With(State p_state) const {
        ShaderStateEntry changed;
        changed._factory = _factory;
        changed._params = std::make_shared<ShaderParams>(std::move(p_state));
        return changed;
    }

    /// The parameters; null in an entry without a factory.
    State const* Parameters() const noexcept { return _params ? &_params->state : nullptr; }

private:
    static constexpr std::size_t MaxVariants = 8;

    struct Variant {
        State state;
        std::shared_ptr<Ogl::Shader const> shader;
        std::uint64_t maker; ///< number of the graphics that made it
    };
    struct ShaderParams {
        explicit ShaderParams(State p_state) : state(std::move(p_state)) {}

        State state;
        std::shared_ptr<Ogl::Shader const> shader;
        std::uint64_t maker = 0; ///< number of the graphics that made it
        std::vector<Variant> variants;
    };

    std::shared_ptr<Factory const> _factory;
    std::shared_ptr<ShaderParams> _params;
};

} // namespace Qor::Chart::Render
