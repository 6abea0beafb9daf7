#pragma once

#include "framework/Export.h"
#include "framework/core/Ref.h"
#include "framework/model/ModelNode.h"
#include "framework/model/SharedMatrix.h"
#include "framework/model/Symbol.h"

#include <QColor>

#include <utility>

namespace Qor::Chart::Model {

/// One symbol somewhere in the scene, in one colour. There may be millions of them: an object carries its values and
/// nothing else, and the matrix is shared with who shows it.
class QOR_FRAMEWORK_API SimpleObject : public ModelNode {
public:
    static Property<SimpleObject, SharedMatrix> const TransformProperty;
    static Property<SimpleObject, QColor> const ColorProperty;
    static Property<SimpleObject, bool> const PulseProperty;
    static Property<SimpleObject, bool> const PickableProperty;
    static Property<SimpleObject, bool> const FrontProperty;
    static Property<SimpleObject, bool> const VisibleBehindGeometryProperty;
    static PropertyList const& ClassProperties();

    SimpleObject();
    explicit SimpleObject(Core::Ptr<Symbol> p_symbol);

    /// What the object looks like; empty for an object that shows nothing yet. The object follows its symbol: a change of
    /// the symbol reaches it, and attaching one is reported as a change of the reference "symbol".
    Core::Ptr<Symbol> const& GetSymbol() const noexcept { return _symbol.Get(); }
    void SetSymbol(Core::Ptr<Symbol> p_symbol);

    /// From the symbol's coordinates to the scene's, in metres.
    SharedMatrix const& Transform() const noexcept { return _transform; }
    /// Any affine matrix, shear and mirror included. One that is not finite or not affine is refused with a message to the
    /// logger: nothing changes and the result is false.
    bool SetTransform(SharedMatrix p_transform) { return TransformProperty.Set(*this, std::move(p_transform)); }

    QColor const& Color() const noexcept { return _color; }
    bool SetColor(QColor const& p_color) { return ColorProperty.Set(*this, p_color); }

    /// Whether the object's brightness swells and fades, to catch the eye.
    bool Pulse() const noexcept { return _pulse; }
    void SetPulse(bool p_pulse) { PulseProperty.Set(*this, p_pulse); }

    /// Whether the pointer finds the object.
    bool IsPickable() const noexcept { return _pickable; }
    void SetPickable(bool p_pickable) { PickableProperty.Set(*this, p_pickable); }

    /// Whether a pickable object is drawn after, and found before, those around it.
    bool IsFront() const noexcept { return _front; }
    void SetFront(bool p_front) { FrontProperty.Set(*this, p_front); }

    /// Whether the object shimmers through what is in front of it.
    bool IsVisibleBehindGeometry() const noexcept { return _visibleBehindGeometry; }
    void SetVisibleBehindGeometry(bool p_visible) { VisibleBehindGeometryProperty.Set(*this, p_visible); }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~SimpleObject() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;
    void CopyTo(ModelNode& p_clone) const override;

private:
    bool _pulse = false;
    bool _pickable = true;
    bool _front = false;
    bool _visibleBehindGeometry = false;
    QColor _color{200, 200, 200};
    SharedMatrix _transform;
    Core::Ref<Symbol> _symbol;
};

} // namespace Qor::Chart::Model
