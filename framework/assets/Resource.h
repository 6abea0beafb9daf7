#pragma once

#include "framework/Export.h"
#include "framework/assets/FontFile.h"
#include "framework/assets/ShaderText.h"
#include "framework/qorfile/filepath.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Qor::Chart::Assets {

/// Finds by name what the library draws with: images, shader sources and fonts. A host may put its own in front, in folders that
/// it adds; what it does not replace is built into the library.
class QOR_FRAMEWORK_API Resource {
public:
    /// Looks into this folder as well, after those that were added before and before what is built in.
    void AddFolder(qorfile::filepath p_folder);

    /// The file of the image of that name, without extension, such as "PopOut": NAME.png, NAME.jpg or NAME.bmp in one of the
    /// folders, else a built-in image, whose path only `ImageCache` can read. An empty path when there is none.
    qorfile::filepath ImageFile(std::string const& p_name) const;

    /// The text that replaces the shader source of that name: one that was put in by `SetShaderSource`, or the files
    /// NAME.vert and NAME.frag of one of the folders. Empty when the one that the library has is to be used. Always the
    /// same handle for the same name, so that shaders made of it can be shared. A file that cannot be read is reported to the
    /// log and passed over.
    std::shared_ptr<ShaderText const> ShaderSource(std::string const& p_name) const;
    /// Replaces the source named by p_text.name from now on.
    void SetShaderSource(ShaderText p_text);

    /// The fonts of that name, the preferred one first, followed by those that have the characters it lacks: NAME.ttf or
    /// NAME.otf of one of the folders, else the family of that name that is installed or what comes nearest to it. An empty
    /// name stands for the default fonts. Empty only when no font with outlines is installed.
    std::vector<FontFile> FontSet(std::string const& p_name) const;

private:
    std::shared_ptr<ShaderText const> ReadShaderSource(std::string const& p_name) const;

    std::vector<qorfile::filepath> _folders;
    mutable std::map<std::string, std::shared_ptr<ShaderText const>, std::less<>> _shaderSources;
    mutable std::map<std::string, std::vector<FontFile>> _fontSets;
};

} // namespace Qor::Chart::Assets
