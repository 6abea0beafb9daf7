#pragma once

#include "framework/Export.h"
#include "framework/types/Matrix4.h"

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/intrusive_ref_counter.hpp>

#include <iosfwd>

namespace Qor::Chart::Model {

/// A matrix that never changes and is shared by all copies of its handle, so that a copy costs a pointer. The identity,
/// which most objects have, takes no memory at all.
class QOR_FRAMEWORK_API SharedMatrix {
public:
    /// The identity.
    SharedMatrix() noexcept = default;
    SharedMatrix(Types::Matrix4 const& p_matrix);

    Types::Matrix4 const& operator*() const noexcept { return _block ? _block->matrix : Identity(); }
    Types::Matrix4 const* operator->() const noexcept { return &**this; }
    bool IsIdentity() const noexcept { return !_block; }

    bool operator==(SharedMatrix const& p_other) const noexcept {
        return _block == p_other._block || **this == *p_other;
    }

private:
    struct Block : boost::intrusive_ref_counter<Block> {
        explicit Block(Types::Matrix4 const& p_matrix) noexcept : matrix(p_matrix) {}

        Types::Matrix4 const matrix;
    };
    static Types::Matrix4 const& Identity() noexcept;

    boost::intrusive_ptr<Block const> _block;
};

QOR_FRAMEWORK_API std::ostream& operator<<(std::ostream& p_stream, SharedMatrix const& p_matrix);

} // namespace Qor::Chart::Model
