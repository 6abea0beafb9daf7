#include "host/UnitConverter.h"

#include "framework/utility/Logger.h"
#include "framework/utility/Unicode.h"
#include "host/HostError.h"

#include <udunits2.h>

#include <array>
#include <cmath>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

namespace Qor::Chart::Host {

namespace {

struct Linear {
    double factor = 1.0;
    double offset = 0.0;
};

struct FreeUnit {
    void operator()(ut_unit* p_unit) const { ut_free(p_unit); }
};
using Unit = std::unique_ptr<ut_unit, FreeUnit>;

struct FreeConverter {
    void operator()(cv_converter* p_converter) const { cv_free(p_converter); }
};
using Converter = std::unique_ptr<cv_converter, FreeConverter>;

/// The database of units of the process. The library behind it is not made for threads and writes its complaints to
/// standard error: every use goes through here, under a lock and with the complaints silenced meanwhile.
class Database {
public:
    static Database& Instance() {
        static Database database;
        return database;
    }

    bool IsUnit(std::wstring const& p_name) {
        std::scoped_lock const lock(_mutex);
        Quiet const quiet;
        return Parse(p_name) != nullptr;
    }

    /// How values go from one unit to another; nothing when they don't.
    std::optional<Linear> Conversion(std::wstring const& p_source, std::wstring const& p_dest) {
        std::scoped_lock const lock(_mutex);
        auto key = std::make_pair(p_source, p_dest);
        auto const known = _conversions.find(key);
        if (known != _conversions.end())
            return known->second;
        if (_conversions.size() == MaxConversions)
            _conversions.clear();
        std::optional<Linear> const conversion = Compute(p_source, p_dest);
        _conversions.emplace(std::move(key), conversion);
        return conversion;
    }

private:
    static constexpr std::size_t MaxConversions = 4096;

    class Quiet {
    public:
        Quiet() : _before(ut_set_error_message_handler(ut_ignore)) {}
        ~Quiet() { ut_set_error_message_handler(_before); }
        Quiet(Quiet const&) = delete;
        Quiet& operator=(Quiet const&) = delete;

    private:
        ut_error_message_handler _before;
    };

    Database() {
        Quiet const quiet;
        _system = ut_read_xml(nullptr);
        if (!_system)
            Utility::GetLogger().error("The database of units cannot be read, so no unit can be converted; install the "
                                       "package libudunits2-data or set UDUNITS2_XML_PATH to its udunits2.xml.");
    }
    // The units live as long as the process: the library keeps state of its own that outlives ours.
    ~Database() = default;

    Unit Parse(std::wstring const& p_name) const {
        std::string name = Utility::ToUtf8(p_name);
        if (!_system || name.empty() || name.find('\0') != std::string::npos)
            return nullptr;
        ut_trim(name.data(), UT_UTF8);
        return Unit(*name.c_str() != '\0' ? ut_parse(_system, name.c_str(), UT_UTF8) : nullptr);
    }

    std::optional<Linear> Compute(std::wstring const& p_source, std::wstring const& p_dest) const {
        Quiet const quiet;
        Unit const source = Parse(p_source);
        Unit const dest = Parse(p_dest);
        if (!source || !dest || ut_are_convertible(source.get(), dest.get()) == 0)
            return std::nullopt;
        Converter const converter(ut_get_converter(source.get(), dest.get()));
        return converter ? Measure(*converter) : std::nullopt;
    }

    /// Reads factor and offset off the converter, far from the offset so that it costs the factor no digits.
    static std::optional<Linear> Measure(cv_converter const& p_converter) {
        constexpr double far = 1048576.0;
        Linear linear;
        linear.offset = cv_convert_double(&p_converter, 0.0);
        linear.factor = (cv_convert_double(&p_converter, far) - linear.offset) / far;
        double const probe = cv_convert_double(&p_converter, 3.0);
        double const expected = linear.factor * 3.0 + linear.offset;
        bool const isLinear = std::fabs(probe - expected) <= 1e-9 * (std::fabs(probe) + std::fabs(linear.offset));
        if (!std::isfinite(linear.factor) || !std::isfinite(linear.offset) || linear.factor == 0.0 || !isLinear)
            return std::nullopt;
        return linear;
    }

    std::mutex _mutex;
    ut_system* _system = nullptr;
    std::map<std::pair<std::wstring, std::wstring>, std::optional<Linear>> _conversions;
};

/// The SI units that quantities are shown in. Where two measure the same thing, the name of the quantity decides.
struct SiUnit {
    std::wstring_view quantity;
    std::wstring_view unit;
};
constexpr std::array SiUnits{
    SiUnit{L"Length", L"m"},
    SiUnit{L"Time", L"s"},
    SiUnit{L"Mass", L"kg"},
    SiUnit{L"Temperature", L"K"},
    SiUnit{L"Current", L"A"},
    SiUnit{L"Amount", L"mol"},
    SiUnit{L"Luminous intensity", L"cd"},
    SiUnit{L"Angle", L"rad"},
    SiUnit{L"Ratio", L"1"},
    SiUnit{L"Area", L"m2"},
    SiUnit{L"Volume", L"m3"},
    SiUnit{L"Velocity", L"m/s"},
    SiUnit{L"Acceleration", L"m/s2"},
    SiUnit{L"Density", L"kg/m3"},
    SiUnit{L"Force", L"N"},
    SiUnit{L"Pressure", L"Pa"},
    SiUnit{L"Energy", L"J"},
    SiUnit{L"Torque", L"N.m"},
    SiUnit{L"Power", L"W"},
    SiUnit{L"Frequency", L"Hz"},
    SiUnit{L"Angular velocity", L"rad/s"},
    SiUnit{L"Voltage", L"V"},
    SiUnit{L"Resistance", L"ohm"},
    SiUnit{L"Resistivity", L"ohm.m"},
    SiUnit{L"Conductivity", L"S/m"},
    SiUnit{L"Charge", L"C"},
    SiUnit{L"Capacitance", L"F"},
    SiUnit{L"Inductance", L"H"},
    SiUnit{L"Magnetic flux density", L"T"},
    SiUnit{L"Dynamic viscosity", L"Pa.s"},
    SiUnit{L"Mass flow rate", L"kg/s"},
    SiUnit{L"Volume flow rate", L"m3/s"},
    SiUnit{L"Concentration", L"mol/m3"},
    SiUnit{L"Gradient of temperature", L"K/m"},
    SiUnit{L"Gradient of pressure", L"Pa/m"},
    SiUnit{L"Wave number", L"m-1"},
};

} // namespace

UnitConverter::UnitConverter() = default;
UnitConverter::~UnitConverter() = default;

bool UnitConverter::IsUnit(std::wstring const& p_unit) {
    return Database::Instance().IsUnit(p_unit);
}

bool UnitConverter::AreConvertable(std::wstring const& p_source, std::wstring const& p_dest) const {
    return Database::Instance().Conversion(p_source, p_dest).has_value();
}

void UnitConverter::GetConversionFactors(
    std::wstring const& p_source, std::wstring const& p_dest, double& p_factor, double& p_offset) const {
    if (std::optional<Linear> const conversion = Database::Instance().Conversion(p_source, p_dest)) {
        p_factor = conversion->factor;
        p_offset = conversion->offset;
    }
}

std::wstring UnitConverter::GetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit) {
    auto const chosen = _displayUnits.find(p_quantityType);
    if (chosen != _displayUnits.end() && AreConvertable(p_unit, chosen->second))
        return chosen->second;
    for (SiUnit const& si : SiUnits) {
        if (si.quantity == p_quantityType && AreConvertable(p_unit, std::wstring(si.unit)))
            return std::wstring(si.unit);
    }
    for (SiUnit const& si : SiUnits) {
        if (AreConvertable(p_unit, std::wstring(si.unit)))
            return std::wstring(si.unit);
    }
    return p_unit;
}

void UnitConverter::SetDisplayUnit(std::wstring const& p_quantityType, std::wstring const& p_unit) {
    if (p_unit.empty()) {
        _displayUnits.erase(p_quantityType);
        return;
    }
    if (!IsUnit(p_unit))
        throw HostError("\"" + Utility::ToUtf8(p_unit) + "\" is no unit that " + Utility::ToUtf8(p_quantityType) +
            " could be shown in; give one such as \"m\", \"km/h\" or \"degC\".");
    _displayUnits[p_quantityType] = p_unit;
}

} // namespace Qor::Chart::Host
