#pragma once

#include "framework/core/Node.h"
#include "framework/types/QuantityUnit.h"
#include "framework/types/UnitsConverter.h"
#include "render/Export.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace Qor::Chart::Render {

/// Decides in which unit a quantity is shown and how values go from one unit to another, by asking the converter that the
/// host registers. It answers for equal units itself, checks the host's answers, and is a node, so that whoever depends on
/// units is updated when the host registers another converter. What is asked without a converter is reported to the
/// logger and answered with: not convertible, factor 1, offset 0, the same unit.
class QOR_VIS_API UnitSystemConverter : public Core::Node, public Types::UnitsConverter {
public:
    /// How a value goes from one unit to another.
    struct Converter {
        double factor = 1.0;
        double offset = 0.0;

        constexpr double operator()(double p_value) const noexcept { return p_value * factor + offset; }
        constexpr bool operator==(Converter const&) const noexcept = default;
    };

    UnitSystemConverter();
    ~UnitSystemConverter() override;

    /// Takes the host's converter, in place of the one before; an empty pointer takes it away. A change of the node of
    /// kind `ModifiableTypeService`.
    void RegisterConverter(boost::shared_ptr<Types::UnitsConverter> const& p_converter);

    /// Equal names are always convertible; an empty one is not, but to another empty one.
    bool AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const override;
    bool AreConvertable(Types::QuantityUnit const& p_source, Types::QuantityUnit const& p_dest) const override;

    /// Fills in how a value in p_source becomes one in p_dest: value * p_factor + p_offset. Units that are not convertible
    /// are reported, and the host's converter is asked all the same.
    void GetConversionFactors(
        std::wstring const& p_source, std::wstring const& p_dest, double& p_factor, double& p_offset) const override;
    void GetConversionFactors(Types::QuantityUnit const& p_source, Types::QuantityUnit const& p_dest, double& p_factor,
        double& p_offset) const override;

    /// The unit in which a quantity that is given in p_unit is shown; empty when either name is.
    std::wstring GetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit) override;
    Types::QuantityUnit GetDisplayUnit(Types::QuantityUnit const& p_quantityUnit) override;

    Converter ToUnit(std::wstring const& p_from, std::wstring const& p_to) const;
    Converter ToUnit(Types::QuantityUnit const& p_from, Types::QuantityUnit const& p_to) const;

private:
    boost::shared_ptr<Types::UnitsConverter> _converter;
};

} // namespace Qor::Chart::Render
