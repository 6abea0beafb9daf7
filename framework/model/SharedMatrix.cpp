#include "framework/model/SharedMatrix.h"

#include <ostream>

namespace Qor::Chart::Model {

SharedMatrix::SharedMatrix(Types::Matrix4 const& p_matrix)
    : _block(p_matrix == Identity() ? nullptr : new Block(p_matrix)) {}

Types::Matrix4 const& SharedMatrix::Identity() noexcept {
    static Types::Matrix4 const identity;
    return identity;
}

std::ostream& operator<<(std::ostream& p_stream, SharedMatrix const& p_matrix) {
    return p_stream << *p_matrix;
}

} // namespace Qor::Chart::Model
