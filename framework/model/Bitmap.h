#pragma once

#include "framework/Export.h"
#include "framework/model/ModelNode.h"

#include <string>
#include <utility>

namespace Qor::Chart::Model {

/// One image in front of what its pane shows, as large as fits with its sides in proportion.
class QOR_FRAMEWORK_API Bitmap : public ModelNode {
public:
    static Property<Bitmap, std::string> const ImageFileProperty;
    static PropertyList const& ClassProperties();

    Bitmap() = default;

    /// The path of the image, UTF-8.
    std::string const& ImageFile() const noexcept { return _imageFile; }
    void SetImageFile(std::string p_file) { ImageFileProperty.Set(*this, std::move(p_file)); }

    PropertyList const& Properties() const override { return ClassProperties(); }

protected:
    ~Bitmap() override;

    Core::Ptr<ModelNode> NewOfSameClass() const override;

private:
    std::string _imageFile;
};

} // namespace Qor::Chart::Model
