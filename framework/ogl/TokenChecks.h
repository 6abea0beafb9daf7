#pragma once

#include "framework/ogl/Tokens.h"

#include <algorithm>
#include <initializer_list>

namespace Qor::Chart::Ogl {

inline bool IsOneOf(Token p_token, std::initializer_list<Token> p_tokens) {
    return std::find(p_tokens.begin(), p_tokens.end(), p_token) != p_tokens.end();
}

inline bool IsFace(Token p_token) {
    return IsOneOf(p_token, {Tokens::AGL_FRONT, Tokens::AGL_BACK, Tokens::AGL_FRONT_AND_BACK});
}

} // namespace Qor::Chart::Ogl
