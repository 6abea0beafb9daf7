#include "framework/assets/InstalledFonts.h"

#include "framework/utility/Logger.h"

#include <fontconfig/fontconfig.h>

#include <memory>
#include <mutex>

namespace Qor::Chart::Assets {

namespace {

struct PatternDeleter {
    void operator()(FcPattern* p_pattern) const { FcPatternDestroy(p_pattern); }
};
struct FontSetDeleter {
    void operator()(FcFontSet* p_set) const { FcFontSetDestroy(p_set); }
};

FcChar8 const* Text(char const* p_text) {
    return reinterpret_cast<FcChar8 const*>(p_text);
}

bool IsOfFamily(FcPattern const* p_pattern, std::string const& p_family) {
    FcChar8* family = nullptr;
    for (int i = 0; FcPatternGetString(p_pattern, FC_FAMILY, i, &family) == FcResultMatch; ++i) {
        if (FcStrCmpIgnoreCase(family, Text(p_family.c_str())) == 0) {
            return true;
        }
    }
    return false;
}

void ReportNone() {
    static std::once_flag once;
    std::call_once(once, [] {
        Utility::GetLogger().warning(
            "No font is installed, so text cannot be drawn; install one, such as DejaVu Sans.");
    });
}

bool HasOutlines(FcPattern const* p_pattern) {
    FcBool outlines = FcFalse;
    return FcPatternGetBool(p_pattern, FC_OUTLINE, 0, &outlines) == FcResultMatch && outlines == FcTrue;
}

} // namespace

std::vector<FontFile> InstalledFonts::Find(std::string const& p_family) {
    std::unique_ptr<FcPattern, PatternDeleter> const pattern(FcPatternCreate());
    FcPatternAddString(pattern.get(), FC_FAMILY, Text(p_family.empty() ? "sans-serif" : p_family.c_str()));
    FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue);
    FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
    FcDefaultSubstitute(pattern.get());

    FcResult result = FcResultNoMatch;
    std::unique_ptr<FcFontSet, FontSetDeleter> const sorted(
        FcFontSort(nullptr, pattern.get(), FcTrue, nullptr, &result));
    std::vector<FontFile> fonts;
    for (int i = 0; sorted && i < sorted->nfont; ++i) {
        FcChar8* file = nullptr;
        int index = 0;
        if (HasOutlines(sorted->fonts[i]) && FcPatternGetString(sorted->fonts[i], FC_FILE, 0, &file) == FcResultMatch) {
            if (fonts.empty() && !p_family.empty() && !IsOfFamily(sorted->fonts[i], p_family)) {
                Utility::GetLogger().warning("The font \"" + p_family + "\" is not installed; \"" +
                    reinterpret_cast<char const*>(file) + "\" is used instead.");
            }
            FcPatternGetInteger(sorted->fonts[i], FC_INDEX, 0, &index);
            fonts.push_back({qorfile::filepath(reinterpret_cast<char const*>(file)), index});
        }
    }
    if (fonts.empty()) {
        ReportNone();
    }
    return fonts;
}

} // namespace Qor::Chart::Assets
